#include "interpreter/js/apitest.h"
#include "interpreter/js/debug/hiddenobjects.h"
#include "objectmodel/samplemodel.h"

namespace Torvix {
namespace {

using JsBindingsTest = ApiTest;

/** Name and length of the global functions, then the names of the global objects, in their order. */
const char* const globals = R"([
    ["print", 1], ["pause", 1], ["cast", 1], ["objectName", 1], ["source", 1], ["findObject", 1],
    ["findAllObjects", 1], ["sendEvent", 2], ["startApplication", 1], ["attachToApplication", 1],
    ["waitForApplicationLaunch", 1], ["setApplicationContext", 1], ["defaultApplicationContext", 0],
    ["currentApplicationContext", 0], ["applicationContext", 1], ["applicationContextList", 0],
    ["waitFor", 1], ["waitForObject", 1], ["waitForObjectExists", 1], ["waitForObjectItem", 2],
    ["installEventHandler", 2], ["uninstallEventHandler", 2], ["mousePress", 0], ["mouseRelease", 0],
    ["mouseMove", 0], ["readGesture", 0], ["runFeatureFile", 0], ["object"], ["testData"], ["objectMap"],
    ["torvixinfo"], ["testInteraction"], ["File"], ["Intl"], ["OS"], ["console"], ["Console"], ["XML"],
    ["Socket"], ["Library"], ["SQL"], ["XMLHttpRequest"], ["FormData"], ["MouseButton"], ["Modifier"],
    ["WebSocket"]])";

TEST_F(JsBindingsTest, TheGlobalScopeIsFilledInOrderWithTheStatedLengths)
{
    ASSERT_TRUE(run(QStringLiteral("var rows = %1; var names = rows.map(row => row[0]);"
                                   "var shown = []; for (var name in globalThis) shown.push(name);")
                        .arg(globals)));
    ASSERT_TRUE(run("var there = names.filter(n => n in globalThis)"));
    EXPECT_EQ(text("shown.filter(n => names.includes(n)).join()"), text("there.join()"));
    EXPECT_EQ(text("there.length >= 28 && there.includes('console')"), "true");
    EXPECT_EQ(
        text("there.concat('test').filter(n => { var d = Object.getOwnPropertyDescriptor(globalThis, n);"
             "return !(d.writable && d.enumerable && d.configurable) }).join()"),
        "")
        << "scripts may replace and delete them";
    EXPECT_EQ(text("rows.filter(r => r.length == 2 && r[0] in globalThis && globalThis[r[0]].length !== r[1])"
                   ".join(' ')"),
              "");
    EXPECT_EQ(text("shown.includes('test')"), "true");
    EXPECT_EQ(text("String(Object.keys(Object.getOwnPropertyDescriptor(print, 'length')))"),
              "value,writable,enumerable,configurable");
    EXPECT_EQ(text("var d = Object.getOwnPropertyDescriptor(print, 'length');"
                   "[d.writable, d.enumerable, d.configurable].join()"),
              "false,false,false");
}

TEST_F(JsBindingsTest, MembersOfTheGroupingObjects)
{
    EXPECT_EQ(text("var all = []; for (var n in object) all.push(n + object[n].length); all.join()"),
              "exists1,isPointer1,isValue1,isReference1,isArray1,ref1,deref1,children1,globalBounds1,parent1,"
              "topLevelObjects1,properties1,convertTo2,createNull1,grabScreenshot1");
    EXPECT_EQ(text("all = []; for (var n in objectMap) all.push(n + objectMap[n].length); all.join()"),
              "add1,symbolicName1,realName1,symbolicNames0,load1");
    EXPECT_EQ(text("all = []; for (var n in testInteraction) all.push(n); all.join()"),
              "choice,isAvailable,information,input,notification,password,warning,question,showImage,"
              "None,Ok,Cancel,Yes,No");
    EXPECT_EQ(text("[typeof print.call, typeof object.exists.apply].join()"), "undefined,undefined");
    EXPECT_EQ(text("[console, MouseButton, Modifier, testInteraction]"
                   ".map(o => Object.getPrototypeOf(o) === null).join()"),
              "true,true,true,true");
    EXPECT_EQ(text("['exists', 'grabScreenshot'].map(n => Object.getOwnPropertyDescriptor(object, n))"
                   ".concat(Object.getOwnPropertyDescriptor(testInteraction, 'choice'))"
                   ".every(d => d.writable && d.enumerable && d.configurable)"),
              "true");
    EXPECT_EQ(text("var d = Object.getOwnPropertyDescriptor(testInteraction, 'Ok');"
                   "[d.writable, d.enumerable, d.configurable, d.value].join()"),
              "false,true,false,1");
}

TEST_F(JsBindingsTest, AssignmentsToGroupsAreDroppedAndGlobalsCanBeReplaced)
{
    EXPECT_EQ(text("'use strict'; object.foo = 1; object.exists = 2; torvixinfo.foo = 1; "
                   "[object.foo, typeof object.exists, torvixinfo.foo].join()"),
              ",function,");
    EXPECT_EQ(text("objectMap = 1; print = 2; [objectMap, print].join()"), "1,2");
    JsInterpreter fresh(&runner);
    ASSERT_TRUE(fresh.evaluate("typeof test", script, false, false));
    EXPECT_EQ(fresh.resultMessage(), "undefined") << "until there is a result sink";
}

TEST_F(JsBindingsTest, TheNamesHiddenFromTheScriptsVariablesAreFixed)
{
    QStringList names;
    for (const char* const* name = hiddenObjects; *name; ++name)
        names += QLatin1String(*name);
    EXPECT_EQ(names.size(), 64);
    EXPECT_EQ(names.removeDuplicates(), 0);
    for (const char* name : {"test", "snooze", "QtSystemMsg", "URIError", "qt_winunicode"})
        EXPECT_TRUE(names.contains(name)) << name;
    for (const char* name : {"File", "OS", "console", "Error"})
        EXPECT_FALSE(names.contains(name)) << name;
}

TEST_F(JsBindingsTest, EnumeratorsOfTheGlobalClassAreHiddenNumbers)
{
    Testing::SampleModel sample;
    auto withKeys = std::make_unique<LocalModel>();
    withKeys->addClass("Low").enumerator("Side", {{"Left", 1}, {"Right", 2}});
    withKeys->addClass("Top").superClass("Low").enumerator("Way", {{"Up", 7}});
    withKeys->setGlobalClass("Top");
    Inspector::self()->setCurrent(Inspector::self()->addApplication(std::move(withKeys)));
    EXPECT_EQ(text("[Left, Up, 'Right' in globalThis, Object.keys(globalThis).includes('Up')].join()"),
              "1,7,true,false")
        << "of an application that came after the interpreter, too";
    renewInterpreter(&runner);
    EXPECT_EQ(text("[Left, Right, Up].join()"), "1,2,7");
    EXPECT_EQ(text("var seen = ''; for (var n in globalThis) if (n == 'Left' || n == 'Up') seen += n; seen"),
              "");
    EXPECT_EQ(text("Left = 5; var kept = Left; delete Up; [kept, typeof Up].join()"), "5,undefined")
        << "hidden and nothing more";
    interpreter.reset();
}

} // namespace
} // namespace Torvix
