#include "interpreter/js/apitest.h"
#include "objectmodel/objectmap.h"
#include "objectmodel/samplemodel.h"
#include "testsupport/objectfunctions.h"

namespace Torvix {
namespace {

/** Answers failed look-ups, loads maps by what they are called. */
class LookupRunner : public DummyRunnerInterface
{
public:
    void reportFailedLookup(const QString& name, const QString& function, QString*) override
    {
        lookups += function + ' ' + name;
        if (clearsError)
            Inspector::self()->setLastError(QString());
    }
    bool loadObjectMap(const QString& path) override
    {
        loaded = path;
        if (path == "bad.map")
            Inspector::self()->note(Failure{"bad.map:2: 'A' is there twice"});
        return path.endsWith(".map");
    }

    QStringList lookups;
    QString loaded;
    bool clearsError = false;
};

class JsObjectAccessTest : public ApiTest
{
protected:
    JsObjectAccessTest()
    {
        renewInterpreter(&lookupRunner);
        ObjectMap::self()->clear();
    }
    ~JsObjectAccessTest() override
    {
        interpreter.reset();
        ObjectMap::self()->clear();
        setDefaultWaitTimeoutMs(20'000);
    }

    Testing::SampleModel sample;
    LookupRunner lookupRunner;
};

const char* const one = R"({type: "Shape", name: "one"})";

TEST_F(JsObjectAccessTest, ObjectsAreFoundByTextAndByMap)
{
    EXPECT_EQ(text("findObject(\"{type='Shape' name='one'}\").size"), "7");
    EXPECT_EQ(text(QStringLiteral("findObject(%1).size").arg(one)), "7");
    EXPECT_EQ(text(QStringLiteral("waitForObject(%1).size + waitForObjectExists(%1, 0).size").arg(one)),
              "14");
    EXPECT_EQ(text("findAllObjects({type: 'Shape'}).length + findAllObjects({type: 'None'}).length"), "2");
    EXPECT_EQ(text(QStringLiteral("[object.exists(%1), object.exists('no such')].join()").arg(one)),
              "true,false");
    EXPECT_EQ(Inspector::self()->lastError(), "") << "a miss leaves no trace";
    EXPECT_EQ(text(QStringLiteral("var o = waitForObject(%1); waitForObject(o).size").arg(one)), "7");
}

TEST_F(JsObjectAccessTest, AMissGoesToTheRunnerAndBecomesAnError)
{
    setDefaultWaitTimeoutMs(1);
    const QString missing = thrown("findObject({name: 'three', type: 'Shape'})");
    EXPECT_TRUE(missing.startsWith("Error: ")) << missing.toStdString();
    EXPECT_TRUE(thrown("waitForObject({type: 'None'})").startsWith("TypeError: "));
    EXPECT_TRUE(thrown("waitForObjectExists({type: 'None'}, 5)").startsWith("TypeError: "));
    ASSERT_EQ(lookupRunner.lookups.size(), 3);
    EXPECT_TRUE(lookupRunner.lookups[0].startsWith("findObject {")) << lookupRunner.lookups[0].toStdString();
    EXPECT_TRUE(lookupRunner.lookups[1].startsWith("waitForObject {"));
    lookupRunner.clearsError = true;
    EXPECT_EQ(thrown("findObject({type: 'None'})"), "Error: Unknown lookup error");
}

TEST_F(JsObjectAccessTest, ArgumentsAreCheckedInTheirOrder)
{
    ASSERT_TRUE(run(QStringLiteral("var o = findObject(%1)").arg(one)));
    const std::pair<const char*, const char*> cases[] = {
        {"findObject()", "Error: findObject() takes a string argument"},
        {"findObject('a', 'b')", "Error: findObject() takes a string argument"},
        {"findObject(5)", "Error: findObject() takes a string argument"},
        {"object.exists()", "Error: object.exists() takes a string argument"},
        {"object.isPointer()",
         "SyntaxError: Expected exactly a single argument in call to object.isPointer()"},
        {"object.isValue(o, 1)",
         "SyntaxError: Expected exactly a single argument in call to object.isValue()"},
        {"object.isReference({})", "TypeError: Invalid argument type"},
        {"object.isArray()", "SyntaxError: Expected exactly a single argument in call to object.isArray()"},
        {"object.ref()", "SyntaxError: Expected exactly a single argument in call to object.ref()"},
        {"object.deref(1, 2)", "SyntaxError: Expected exactly a single argument in call to object.ref()"},
        {"objectMap.add()", "SyntaxError: Expected exactly a single argument in call to objectMap.add()"},
        {"objectMap.add({})", "TypeError: Invalid argument type"},
        {"objectMap.symbolicName()",
         "SyntaxError: Expected exactly a single argument in call to objectMap.symbolicName()"},
        {"objectMap.realName(5)", "TypeError: Invalid argument type"},
        {"objectMap.symbolicNames(1)", "SyntaxError: objectMap.symbolicNames() does not take any arguments"},
        {"objectMap.load()", "SyntaxError: Expected one string argument"},
        {"objectMap.load(5)", "Error: File '5' couldn't be found."},
        {"objectMap.load({toString() { throw new RangeError('odd') }})", "RangeError: odd"},
        {"objectName()", "TypeError: objectName() expects an argument"},
        {"objectName(o, o)", "TypeError: objectName() expects an argument"},
        {"objectName({})", "TypeError: Invalid object passed to objectName()"},
        {"cast(o)", "SyntaxError: cast(object, type)"},
        {"cast({}, 'NoSuchType')", "TypeError: Invalid object passed to cast()"},
        {"cast(o, 'NoSuchType')", "TypeError: Unknown type"},
        {"cast(o, 5)", "TypeError: Invalid cast() argument type"},
        {"waitForObject()", "TypeError: Wrong number of arguments (0), use waitForObject(name[, timeout])"},
        {"waitForObject(o, 'x')", "TypeError: The timeout has to be a number of milliseconds, not 'x'"},
        {"object.convertTo(o, 'NoSuchType')", "TypeError: Unknown type 'NoSuchType'"},
        {"object.createNull()", "TypeError: Wrong number of arguments (0), use object.createNull(type)"},
        {"object.topLevelObjects(1)",
         "TypeError: Wrong number of arguments (1), use object.topLevelObjects()"},
    };
    for (const auto& [code, expected] : cases)
        EXPECT_EQ(thrown(code), expected) << code;
    EXPECT_EQ(lookupRunner.loaded, "5") << "a path is taken as text";
    EXPECT_EQ(thrown("objectMap.load('bad.map')"), "Error: bad.map:2: 'A' is there twice");
    EXPECT_EQ(thrown("objectMap.load('good.map')"), "nothing");
}

TEST_F(JsObjectAccessTest, FlagsTellTheForm)
{
    ASSERT_TRUE(run(QStringLiteral("var o = findObject(%1); var p = new Point(1, 2);"
                                   "function form(x) { return [object.isPointer(x), object.isReference(x), "
                                   "object.isValue(x), object.isArray(x)].map(Number).join('') }")
                        .arg(one)))
        << interpreter->errorMessage().toStdString();
    EXPECT_EQ(text("form(o)"), "1000");
    EXPECT_EQ(text("form(p)"), "0010");
    EXPECT_EQ(text("form(5)"), "0010") << "a number becomes an object";
    EXPECT_EQ(text("form(object.deref(o))"), "0010");
    EXPECT_EQ(text("object.isPointer(object.ref(object.deref(o)))"), "true");
    EXPECT_EQ(thrown("object.deref(p)"), "Error: Dereferencing failed");
}

TEST_F(JsObjectAccessTest, CastActsOnTheObjectItself)
{
    ASSERT_TRUE(run(QStringLiteral("var o = findObject(%1)").arg(one)));
    EXPECT_EQ(text("var c = cast(o, 'Base'); [c.title, c == o].join()"), "first,true");
    EXPECT_EQ(text("cast(o, Shape).size"), "7");
    EXPECT_EQ(text("object.createNull('Shape') == null || String(object.createNull(Shape))"),
              text("String(object.createNull('Shape'))"));
}

TEST_F(JsObjectAccessTest, PropertiesAreAMap)
{
    EXPECT_EQ(text(QStringLiteral("var p = object.properties(findObject(%1)); "
                                  "[p.title, p.size, 'hidden' in p].join()")
                       .arg(one)),
              "first,7,false");
}

TEST_F(JsObjectAccessTest, TheObjectMapKnowsBothNames)
{
    EXPECT_EQ(text("objectMap.symbolicNames().length"), "0");
    ObjectMap::self()->insert("The shape", *ObjectName::fromString("{name='one' type='Shape'}"));
    ObjectMap::self()->insert("Another", *ObjectName::fromString("{name='two' type='Shape'}"));
    EXPECT_EQ(text("objectMap.symbolicNames().join('|')"), "Another|The shape");
    EXPECT_EQ(text("findObject('The shape').size"), "7");
    EXPECT_EQ(text("objectMap.realName('The shape')"), text("objectMap.realName(findObject('The shape'))"));
    EXPECT_EQ(text("objectMap.symbolicName(objectMap.realName('The shape'))"), "The shape");
    EXPECT_EQ(text("objectMap.symbolicName(findObject('Another'))"), "Another");
}

} // namespace
} // namespace Torvix
