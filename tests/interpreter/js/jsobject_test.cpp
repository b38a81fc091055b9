#include "bridgetest.h"

namespace {

using namespace Torvix;

class Wrappers : public BridgeTest
{
protected:
    /** Class Thing with a property of each kind, a method and an enumeration; `thing` is one. */
    void SetUp() override
    {
        LocalModel::ClassBuilder thing = model->addClass("Thing");
        const auto get = [](const Value& value) { return [value](qint64) { return Outcome(value); }; };
        const auto set = [this](qint64, const Value& value) {
            if (value.kind == Value::Kind::String && value.text == "bad")
                return Outcome::failure("no good");
            m_set = value;
            return Outcome();
        };
        thing.property("number", LocalModel::type(Protocol::IntClass), get(Value::ofInt(7)), set);
        thing.property("ratio", LocalModel::type(Protocol::DoubleClass), get(Value::ofDouble(0.5)), set);
        thing.property("name", LocalModel::type(Protocol::StringClass), get(Value::ofString("Anna")), set);
        thing.property("isOn", LocalModel::type(Protocol::BoolClass), get(Value::ofBool(true)), set);
        thing.property("list", LocalModel::type(Protocol::ArrayClassId),
                       get(Value::ofArray({Value::ofInt(1), Value::ofArray({Value::ofString("x")})})), set);
        thing.property("map", LocalModel::type(Protocol::MapClassId),
                       get(Value::ofMap({{"__proto__", Value::ofInt(1)}, {"k", Value::ofInt(2)}})), set);
        thing.property("secret", LocalModel::type(Protocol::IntClass), nullptr, set);
        thing.property("fixed", LocalModel::type(Protocol::IntClass), get(Value::ofInt(1)));
        thing.property("broken", LocalModel::type(Protocol::IntClass),
                       [](qint64) { return Outcome::failure("it broke"); });
        thing.property("shared", LocalModel::type(Protocol::IntClass), get(Value::ofInt(5)), nullptr, true);
        thing.method("act", {}, [this](qint64 object, const QVector<Value>&) {
            ++m_acts;
            return object ? Outcome() : Outcome::failure("no object");
        });
        thing.enumerator("Mode", {{"Slow", 10}, {"Fast", 20}});
        thing.method(
            "callBack", {},
            [this](qint64, const QVector<Value>&) {
                const bool called = interpreter->call("whileWaiting", ObjectList());
                return Outcome(Value::ofString(called ? "called" : interpreter->errorMessage()));
            },
            LocalModel::type(Protocol::StringClass));
        LocalModel::ClassBuilder global = model->addClass("Global");
        global.property("level", LocalModel::type(Protocol::IntClass), get(Value::ofInt(3)), nullptr, true);
        global.property("cleanup", LocalModel::type(Protocol::IntClass), get(Value::ofInt(3)), nullptr, true);
        global.method(
            "answer", {}, [](qint64, const QVector<Value>&) { return Outcome(Value::ofInt(42)); },
            LocalModel::type(Protocol::IntClass), true);
        global.enumerator("Level", {{"Low", 1}, {"High", 2}});
        model->setGlobalClass("Global");
        model->addClass("Ns::Inner").enumerator("E", {{"Key", 9}});
        model->addClass("Array");
        connect();
        m_thing = put("thing", "Thing");
    }

    qint64 m_thing = 0;
    Value m_set;
    int m_acts = 0;
};

TEST_F(Wrappers, ReadPropertiesAsScriptValues)
{
    EXPECT_EQ("7 0.5 Anna true", text("[thing.number, thing.ratio, thing.name, thing.isOn].join(' ')"));
    EXPECT_EQ("[1,[\"x\"]]{\"__proto__\":1,\"k\":2}",
              text("JSON.stringify(thing.list) + JSON.stringify(thing.map)"));
    EXPECT_EQ("true", text("Array.isArray(thing.list) && thing.list.map(x => x).length === 2"));
    EXPECT_EQ("20", text("thing.Fast"));
    EXPECT_EQ("undefined function", text("[typeof thing.nothing, typeof thing.act].join(' ')"));
    EXPECT_EQ("Error: Property is not readable", thrown("thing.secret"));
    EXPECT_EQ("Error: Error occurred when reading property: it broke", thrown("thing.broken"));
}

TEST_F(Wrappers, WriteOnlyWhatTheClassHas)
{
    text("thing.number = 8");
    EXPECT_EQ(8, m_set.integer);
    text("thing.list = ['a', 2]");
    EXPECT_EQ(2, m_set.elements.size());
    EXPECT_EQ("Error: Can't add new properties to this object", thrown("thing.extra = 1"));
    EXPECT_EQ("Error: Attempt to set a non-writable property", thrown("thing.fixed = 2"));
    EXPECT_THAT(thrown("Object.defineProperty(thing, 'extra', {value: 1})").toStdString(),
                testing::StartsWith("TypeError: "));
    EXPECT_EQ("false,undefined,7", text("[Reflect.defineProperty(thing, 'other', {value: 1}),"
                                        " typeof thing.extra, thing.number].join()"));
    EXPECT_EQ("Error: Failed to convert property value to type Map", thrown("thing.map = [1]"));
    EXPECT_EQ("Error: Failed to set property: no good", thrown("thing.name = 'bad'"));
}

TEST_F(Wrappers, AnswerInAndEnumerationByTheirClass)
{
    EXPECT_EQ("true true false false",
              text("['number' in thing, 'act' in thing, 'Fast' in thing, 'nothing' in thing].join(' ')"));
    EXPECT_EQ("number,ratio,name,isOn,list,map,secret,fixed,broken,shared",
              text("Object.keys(thing).join()"));
    const int before = local->requestCount();
    text("for (const name in thing);");
    EXPECT_EQ(before, local->requestCount()) << "enumeration reads no value";
}

TEST_F(Wrappers, AreEqualWhenTheyStandForOneObject)
{
    put("other", "Thing");
    KJS::ExecState* exec = interpreter->getGlobalExecState();
    exec->interpreter()->globalObject().put(
        exec, "again", jsWrap(exec, jsUnWrap(exec, exec->interpreter()->globalObject().get(exec, "thing"))));
    EXPECT_EQ("true false false true",
              text("[thing == again, thing == other, thing === again, thing != other].join(' ')"));
    EXPECT_EQ("false", text("thing == 5"));
    EXPECT_EQ("function 0", text("typeof thing.valueOf + ' ' + thing.toString.length"));
    EXPECT_EQ("undefined", text("typeof thing.toString.call"));
}

TEST_F(Wrappers, OfDestroyedObjectsFailClearlyAndStayValues)
{
    local->destroyObject(m_thing);
    EXPECT_EQ("Error: Attempt to access an invalidated object", thrown("thing.number"));
    EXPECT_EQ("Error: Attempt to access an invalidated object", thrown("thing.act()"));
    EXPECT_EQ("Error: Attempt to modify an invalidated object", thrown("thing.number = 1"));
    EXPECT_EQ("TypeError: The Thing has been destroyed", thrown("object.properties(thing)"));
    EXPECT_EQ("true", text("'number' in thing"));
}

TEST_F(Wrappers, OfNullObjectsHaveNoProperties)
{
    KJS::ExecState* exec = interpreter->getGlobalExecState();
    exec->interpreter()->globalObject().put(exec, "none",
                                            jsWrap(exec, application->classByName("Thing")->createNull()));
    EXPECT_EQ("Error: Attempt to access a property of a null object", thrown("none.number"));
    EXPECT_EQ("20", text("none.Fast"));
}

TEST_F(Wrappers, AMethodKeptAcrossAChangeOfApplicationIsRefused)
{
    text("var kept = thing.act; kept.call(thing)");
    EXPECT_EQ(1, m_acts);
    runner.current = new ApplicationContext;
    EXPECT_EQ("Error: Cannot call function or method, current application context changed.",
              thrown("kept.call(thing)"));
    EXPECT_EQ(1, m_acts);
}

TEST_F(Wrappers, AFailedCallNamesTheMethod)
{
    EXPECT_EQ("EvalError: Error in act() invocation: act() needs an object: it is not static",
              thrown("thing.act.call(null)"));
}

TEST_F(Wrappers, AScriptFunctionMayRunAndCallTheApplicationWhileACallWaits)
{
    EXPECT_EQ("called 7", text("let seen; function whileWaiting() { seen = thing.number }\n"
                               "thing.callBack() + ' ' + seen"));
    // What the call-back throws arrives where the application was called.
    EXPECT_EQ("Error: mine",
              thrown("whileWaiting = function() { throw new Error('mine') }; thing.callBack()"));
    EXPECT_EQ("7", text("String(thing.number)")) << "nothing stays pending";
}

TEST_F(Wrappers, ClassesShowStaticMembersOnly)
{
    EXPECT_EQ("5 20 function undefined",
              text("[Thing.shared, Thing.Fast, typeof Thing.act, typeof Thing.nothing].join(' ')"));
    EXPECT_EQ("ReferenceError: Can't access property without object reference", thrown("Thing.number"));
    EXPECT_EQ("true true false", text("['shared' in Thing, 'act' in Thing, 'Fast' in Thing].join(' ')"));
    EXPECT_EQ("9", text("Ns.Inner.Key"));
    EXPECT_EQ("undefined true false", text("[typeof Ns.Nothing, 'Inner' in Ns, 'Nothing' in Ns].join(' ')"));
}

TEST_F(Wrappers, TheGlobalObjectFindsTheApplicationByName)
{
    EXPECT_EQ("object 3", text("typeof level + ' ' + level.valueOf()")) << "global values stay wrappers";
    EXPECT_EQ("42", text("answer()"));
    EXPECT_EQ("2 false", text("High + ' ' + Object.keys(globalThis).includes('High')"));
    EXPECT_EQ("undefined", text("typeof cleanup"));
    EXPECT_EQ("true", text("Array === [].constructor"));
    EXPECT_EQ("ReferenceError", text("(() => { try { return noSuchName } catch (e) { return e.name } })()"));
    text("var level = 1; function answer() { return 1 }");
    EXPECT_EQ("2", text("level + answer()")) << "what a script declares hides the application's";
}

TEST_F(Wrappers, LetAnExceptionOfAScriptGetterThrough)
{
    EXPECT_EQ("RangeError: mine", thrown("thing.map = { get k() { throw new RangeError('mine') } }"));
}

} // namespace
