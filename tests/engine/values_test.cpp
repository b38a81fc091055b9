#include "enginetest.h"

#include <cmath>
#include <limits>

namespace KJS {
namespace {

using ValuesTest = EngineTest;

TEST_F(ValuesTest, TypeCodesAreTheFixedOnes)
{
    const struct
    {
        const char* code;
        int type;
    } cases[] = {
        {"void 0", 0}, {"null", 2}, {"true", 3},           {"'x'", 4},         {"1.5", 5},
        {"({})", 6},   {"[]", 6},   {"(function(){})", 6}, {"Symbol('s')", 7}, {"12345678901234567890n", 8}};
    for (const auto& each : cases)
        EXPECT_EQ(value(each.code).dispatchType(), each.type) << each.code;
    EXPECT_EQ(Undefined().dispatchType(), 1);
    EXPECT_EQ(Value().dispatchType(), 0);
    EXPECT_TRUE(Value().isNull());
    EXPECT_FALSE(Null().isNull());
}

TEST_F(ValuesTest, ConversionsAgreeWithScript)
{
    // the same conversion done by script itself is the oracle
    const char* const inputs[] = {"undefined",
                                  "null",
                                  "true",
                                  "false",
                                  "0",
                                  "-0",
                                  "1",
                                  "-1",
                                  "3.99",
                                  "-3.99",
                                  "NaN",
                                  "Infinity",
                                  "-Infinity",
                                  "4294967296",
                                  "4294967297.5",
                                  "-2147483649",
                                  "2147483648",
                                  "65536",
                                  "1e21",
                                  "1.5e300",
                                  "5e-324",
                                  "0.1",
                                  "123456789012345680000",
                                  "1e-7",
                                  "0.000001",
                                  "''",
                                  "' 12 '",
                                  "'0x1F'",
                                  "'12px'",
                                  "'-Infinity'",
                                  "'1e3'",
                                  "({valueOf(){return 7}})",
                                  "({toString(){return '8'}})",
                                  "[]",
                                  "[5]",
                                  "[1,2]",
                                  "new Date(12345)",
                                  "10n"};
    for (const char* const input : inputs) {
        const QString text = QString::fromLatin1(input);
        define("take", [&](ExecState* state, Object&, const List& arguments) -> Value {
            const Value each = arguments.at(0);
            List results;
            results.append(Boolean(each.toBoolean(state)));
            results.append(each.type() == BigIntType ? Value(Number(10))
                                                     : Value(Number(each.toNumber(state))));
            results.append(String(each.toString(state)));
            results.append(Number(each.type() == BigIntType ? 10 : each.toInt32(state)));
            results.append(Number(each.type() == BigIntType ? 10u : each.toUInt32(state)));
            results.append(Number(each.type() == BigIntType ? 10 : int(each.toUInt16(state))));
            return state->interpreter()->builtinArray().construct(state, results);
        });
        EXPECT_EQ(run("(x => take(x).map(String).join('|'))(" + text + ")"),
                  run("(x => [!!x, Number(x), String(x), Number(x)|0, Number(x)>>>0, (Number(x)>>>0)&65535]"
                      ".map(String).join('|'))(" +
                      text + ")"))
            << input;
    }
}

TEST_F(ValuesTest, SimplisticIntegersAreTruncatedAndHeldAtTheLimits)
{
    const int least = std::numeric_limits<int>::min(), most = std::numeric_limits<int>::max();
    const struct
    {
        double number;
        int integer;
    } cases[] = {
        {3.0, 3},           {3.9, 3},       {-3.9, -3},       {std::nan(""), 0},  {4294967296.0, most},
        {4294967376, most}, {-1e10, least}, {INFINITY, most}, {-INFINITY, least}, {2147483647.0, most}};
    for (const auto& each : cases)
        EXPECT_EQ(Number(each.number).toIntegerSimplistic(exec), each.integer) << each.number;
    EXPECT_EQ(String("12.7").toIntegerSimplistic(exec), 12);
    EXPECT_EQ(Number(-7.9).toInteger(exec), -7);
    EXPECT_EQ(Number(INFINITY).toInteger(exec), INFINITY);
}

TEST_F(ValuesTest, FailingConversionsLeaveTheirException)
{
    Object thrower = object("({toString(){throw 'no text'}, valueOf(){throw 'no number'}})");
    EXPECT_TRUE(thrower.toString(exec).isNull());
    EXPECT_EQ(textOf(interpreter, exec->exception()), "no text");
    exec->clearException();
    EXPECT_TRUE(std::isnan(thrower.toNumber(exec)));
    EXPECT_EQ(textOf(interpreter, exec->exception()), "no number");
    exec->clearException();
    EXPECT_TRUE(Undefined().toObject(exec).isNull());
    EXPECT_EQ(Object::dynamicCast(exec->exception()).get(exec, "name").toString(exec), UString("TypeError"));
    exec->clearException();
    EXPECT_TRUE(value("Symbol('s')").toString(exec).isNull());
    EXPECT_TRUE(exec->hadException());
    exec->clearException();
    EXPECT_TRUE(object("({[Symbol.toPrimitive](){return {}}})").toPrimitive(exec).isNull());
    EXPECT_TRUE(exec->hadException());
}

TEST_F(ValuesTest, PrimitivesAreBoxed)
{
    EXPECT_EQ(Number(1).toObject(exec).className(), UString("Number"));
    EXPECT_EQ(Boolean(true).toObject(exec).className(), UString("Boolean"));
    EXPECT_EQ(String("x").toObject(exec).className(), UString("String"));
    EXPECT_TRUE(Object::dynamicCast(String("x")).isNull());
    EXPECT_EQ(object("({toString(){return 's'}, valueOf(){return 1}})").toPrimitive(exec, StringType).type(),
              StringType);
}

TEST_F(ValuesTest, StringsKeepEveryUnit)
{
    QString odd = QStringLiteral("a");
    odd += QChar(0);
    odd += QChar(0xD800); // unpaired
    odd += QString::fromUtf8("\xF0\x9F\x98\x80");
    global.put(exec, "odd", String(odd));
    EXPECT_EQ(run("[odd.length, odd.charCodeAt(1), odd.charCodeAt(2), odd.codePointAt(3)].join()"),
              "5,0,55296,128512");
    EXPECT_EQ(value("odd").toString(exec).qstring(), odd);
    EXPECT_TRUE(UString(QString()).isNull());
    EXPECT_TRUE(UString(QString()).qstring().isNull());
    EXPECT_FALSE(UString("").isNull());
    EXPECT_EQ(textOf(interpreter, String(UString::null())), "");
    EXPECT_EQ(UString("caf\xC3\xA9").utf8(), "caf\xC3\xA9");
    EXPECT_STREQ(UString("caf\xC3\xA9").ascii(), "caf\xE9");
}

TEST_F(ValuesTest, NumbersPrintAsInScript)
{
    for (const double number : {0.0, -0.0, 1.0, -1.5, 0.1, 1e21, 1e20, 123456789012345680000.0, 1e-6, 1e-7,
                                1.5e-9, 5e-324, 1.7976931348623157e308, 100.0, 12345.678, 4294967296.0}) {
        global.put(exec, "n", Number(number));
        EXPECT_EQ(UString::from(number).qstring(), run("'' + n")) << number;
    }
}

TEST_F(ValuesTest, LooseEqualityAsksTheMember)
{
    int asked = 0;
    define("equality", [&](ExecState* state, Object&, const List& arguments) -> Value {
        ++asked;
        const auto id = [&](int i) {
            return Object::dynamicCast(arguments.at(i)).get(state, "id").toNumber(state);
        };
        return Boolean(arguments.size() == 2 && id(0) == id(1));
    });
    run("var a = {id: 1, '[[==]]': equality}, b = {id: 1}, c = {id: 2};");
    const struct
    {
        const char* left;
        const char* right;
        bool equal;
    } cases[] = {
        {"a", "b", true},     {"b", "a", true},   {"a", "c", false},           {"b", "({id: 1})", false},
        {"b", "b", true},     {"1", "'1'", true}, {"null", "undefined", true}, {"NaN", "NaN", false},
        {"a", "null", false}, {"[1]", "1", true}};
    for (const auto& each : cases) {
        const QString text = QStringLiteral("%1 == %2").arg(each.left, each.right);
        EXPECT_EQ(equal(exec, value(QStringLiteral("(%1)").arg(each.left)),
                        value(QStringLiteral("(%1)").arg(each.right))),
                  each.equal)
            << text.toStdString();
        EXPECT_EQ(run(text), each.equal ? "true" : "false") << text.toStdString();
        EXPECT_EQ(run(QStringLiteral("%1 != %2").arg(each.left, each.right)), each.equal ? "false" : "true");
    }
    EXPECT_GT(asked, 0);
    asked = 0;
    EXPECT_EQ(run("a === b"), "false");
    EXPECT_EQ(asked, 0);
    EXPECT_FALSE(strictEqual(exec, Number(NAN), Number(NAN)));
    EXPECT_TRUE(strictEqual(exec, Number(0.0), Number(-0.0)));
    EXPECT_TRUE(strictEqual(exec, value("10n"), value("5n + 5n")));
}

TEST_F(ValuesTest, IdentifiersAreInternedByContent)
{
    const Identifier a("name"), b(QStringLiteral("na") + QStringLiteral("me"));
    EXPECT_EQ(a, b);
    EXPECT_EQ(qHash(a), qHash(b));
    EXPECT_NE(a, Identifier("Name"));
    EXPECT_TRUE(Identifier(UString::null()).isNull());
    EXPECT_NE(Identifier(""), Identifier());
    bool ok = false;
    EXPECT_EQ(Identifier("4294967294").toArrayIndex(&ok), 4294967294u);
    EXPECT_TRUE(ok);
    for (const char* const no : {"4294967295", "01", "-1", "1.0", "", " 1", "x"}) {
        Identifier(no).toArrayIndex(&ok);
        EXPECT_FALSE(ok) << no;
    }
}

} // namespace
} // namespace KJS
