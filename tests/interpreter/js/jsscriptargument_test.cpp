#include "interpreter/js/bridge/jsscriptargument.h"

#include "interpreter/js/bridge/jsarguments.h"
#include "interpreter/js/scriptobject/jsutils.h"
#include "interpreter/js/scripttest.h"
#include "objectmodel/propertyvalue.h"

#include <cmath>

namespace Torvix {
namespace {

/** What every question answers, one letter each for those that say yes. */
QString kindsOf(const ScriptArgument& value)
{
    const std::pair<bool, const char*> answers[] = {
        {value.isBoolean(), "B"}, {value.isNumber(), "N"},     {value.isInteger(), "I"},
        {value.isString(), "S"},  {value.isStringLike(), "s"}, {value.isObject(), "O"},
        {value.isClass(), "C"},   {value.isCallable(), "f"},   {value.isList(), "L"},
        {value.isMap(), "M"},
    };
    QString kinds;
    for (const auto& [yes, letter] : answers)
        kinds += QLatin1String(yes ? letter : "");
    return kinds;
}

QString describe(const PropertyValue& value)
{
    return QString("%1/%2/%3").arg(value.value).arg(value.matchType).arg(value.type);
}

class JsScriptArgumentTest : public ScriptTest
{
protected:
    SharedPtr<ScriptArgument> value(const QString& expression)
    {
        EXPECT_TRUE(run("var value = (" + expression + ")")) << interpreter->errorMessage().toStdString();
        return new JSScriptArgument(exec(), global().get(exec(), "value"));
    }
};

TEST_F(JsScriptArgumentTest, TypesAndConversionsOfEveryKindOfValue)
{
    run("class Shape { constructor() { this.a = 1; } } function f() {}");
    struct Case
    {
        const char* expression;
        const char* typeName;
        const char* kinds;
        bool boolean;
        int integer;
        const char* string;
    };
    const Case cases[] = {
        {"undefined", "Undefined", "s", false, 0, "undefined"},
        {"null", "Null", "s", false, 0, "null"},
        {"true", "Boolean", "Bs", true, 1, "true"},
        {"'7'", "String", "Ss", true, 7, "7"},
        {"''", "String", "Ss", false, 0, ""},
        {"3.0", "Number", "NIs", true, 3, "3"},
        {"-0", "Number", "NIs", false, 0, "0"},
        {"3.5", "Number", "Ns", true, 3, "3.5"},
        {"NaN", "Number", "Ns", false, 0, "NaN"},
        {"Infinity", "Number", "Ns", true, 2147483647, "Infinity"},
        {"-2147483648", "Number", "NIs", true, -2147483647 - 1, "-2147483648"},
        {"2147483648", "Number", "Ns", true, 2147483647, "2147483648"},
        {"4294967296", "Number", "Ns", true, 2147483647, "4294967296"},
        {"[1, 2]", "Array", "sL", true, 0, "1,2"},
        {"({})", "Object", "sM", true, 0, "[object Object]"},
        {"new Shape", "Shape", "sM", true, 0, "[object Object]"},
        {"Object.create(null)", "Object", "sM", true, 0, nullptr},
        {"new Date(0)", "Date", "s", true, 0, nullptr},
        {"/x/", "RegExp", "s", true, 0, "/x/"},
        {"f", "function", "s", true, 0, nullptr},
        {"Shape", "function", "s", true, 0, nullptr},
        {"({constructor: {name: 'Posed'}})", "Posed", "sM", true, 0, nullptr},
        {"({constructor: 5})", "Object", "sM", true, 0, nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.expression);
        const SharedPtr<ScriptArgument> argument = value(c.expression);
        EXPECT_EQ(argument->typeName(), c.typeName);
        EXPECT_EQ(kindsOf(*argument), c.kinds);
        EXPECT_EQ(argument->toBoolean(), c.boolean);
        if (c.string) {
            EXPECT_EQ(argument->toInteger(), c.integer);
            EXPECT_EQ(argument->toString(), c.string);
        }
        EXPECT_FALSE(bool(argument->invoke({}, nullptr)));
        EXPECT_TRUE(argument->callableIdentifier().isNull());
    }
    EXPECT_EQ(value("'2.5'")->toDouble(), 2.5);
    EXPECT_TRUE(std::isnan(value("({})")->toDouble()));
}

TEST_F(JsScriptArgumentTest, ListsAndMapsAreGivenWholeOrNotAtAll)
{
    const ScriptArgument::List list = value("[1, null, 'c']")->toList();
    ASSERT_EQ(list.size(), 3u);
    EXPECT_EQ(list[0]->toInteger(), 1);
    EXPECT_EQ(list[1]->typeName(), "Null");
    EXPECT_EQ(list[2]->toString(), "c");
    EXPECT_TRUE(value("[1, undefined, 3]")->toList().empty());
    EXPECT_TRUE(value("[1, , 3]")->toList().empty());
    EXPECT_TRUE(value("[]")->toList().empty());
    EXPECT_TRUE(value("5")->toList().empty());

    run("class Base {} Base.prototype.inherited = 'i';"
        "class Derived extends Base { constructor() { super(); this.b = 2; this.a = null; } }");
    QStringList entries;
    for (const auto& [name, entry] : value("new Derived")->toMap())
        entries.append(name + "=" + entry->toString());
    EXPECT_EQ(entries, (QStringList{"a=null", "b=2", "inherited=i"}));
    EXPECT_TRUE(value("{a: 1, b: undefined}")->toMap().empty());
    EXPECT_TRUE(value("'abc'")->toMap().empty());
}

TEST_F(JsScriptArgumentTest, MapsAreRealNamesAndPropertyConditions)
{
    using P = PropertyValue;
    EXPECT_EQ(describe(value("'x'")->toPropertyValue()), describe(P("x", P::Exact, P::String)));
    EXPECT_EQ(describe(value("3.5")->toPropertyValue()), describe(P("3.5", P::Exact, P::Number)));
    EXPECT_EQ(describe(value("false")->toPropertyValue()), describe(P("false", P::Exact, P::Boolean)));
    EXPECT_EQ(describe(value("{wildcardPattern: 'a*', regexPattern: 'b'}")->toPropertyValue()), "a*/2/0");
    EXPECT_EQ(describe(value("{regexPattern: 'b.*', other: 1}")->toPropertyValue()), "b.*/1/0");

    // A regular expression of the script, in the syntax of the one that holds it against properties.
    const std::pair<const char*, const char*> patterns[] = {
        {"/O[kK].*/", "O[kK].*/1/0"},     {"new RegExp('a|b')", "a|b/1/0"},
        {"/ok/gi", "(?i)ok/1/0"},         {"/\\u00e9\\u{1f642}/u", "\\x{00e9}\\x{1f642}/1/0"},
        {"/\\\\u00e9/", "\\\\u00e9/1/0"}, {"/a[^]b\\//", "a[\\s\\S]b\\//1/0"},
    };
    for (const auto& [code, expected] : patterns)
        EXPECT_EQ(describe(value(code)->toPropertyValue()), expected) << code;
    EXPECT_EQ(value("{text: /it's/, window: {type: /Q.*/}}")->toRealName(),
              "{text~='it\\'s' window={type~='Q.*'}}");

    EXPECT_EQ(value("{type: 'QPushButton', text: {wildcardPattern: 'O*'}, visible: true, occurrence: 2}")
                  ->toRealName(),
              "{type='QPushButton' occurrence=2 text*='O*' visible=true}");
    EXPECT_EQ(value("{text: 'OK', window: {type: 'QDialog'}}")->toRealName(),
              "{text='OK' window={type='QDialog'}}");
    EXPECT_EQ(value("'names.ok'")->toRealName(), "names.ok");

    EXPECT_TRUE(isObjectNameType(exec(), static_cast<JSScriptArgument&>(*value("{}")).value()));
    EXPECT_EQ(toObjectNameType(exec(), static_cast<JSScriptArgument&>(*value("{type: 'A'}")).value()),
              "{type='A'}");
    EXPECT_EQ(toObjectNameType(exec(), KJS::Number(5)), "5");
}

} // namespace
} // namespace Torvix
