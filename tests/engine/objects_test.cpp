// C++ objects as scripts meet them.

#include "enginetest.h"

#include <map>

namespace KJS {
namespace {

/** Data of its own behind every operation; logs what it is asked. */
class Box : public ObjectImp
{
public:
    static const ClassInfo info;

    Box(ExecState* exec, QStringList* log)
        : ObjectImp(exec->interpreter()->builtinObjectPrototype())
        , m_log(log)
    {
        m_data["alpha"] = Number(1);
        m_data["beta"] = String("two");
    }

    const ClassInfo* classInfo() const override { return &info; }
    Value get(ExecState* exec, const Identifier& name) const override
    {
        m_log->append("get " + name.qstring());
        if (name == "hidden") // readable, and not there for `in` or enumeration
            return Number(42);
        const auto found = m_data.find(name.qstring());
        return found == m_data.end() ? ObjectImp::get(exec, name) : found->second;
    }
    void put(ExecState* exec, const Identifier& name, const Value& value, int attributes) override
    {
        m_log->append("put " + name.qstring());
        if (name == "locked")
            exec->setException(Error::create(exec, GeneralError, UString("locked is locked")));
        else if (name.qstring().startsWith('_'))
            ObjectImp::put(exec, name, value, attributes);
        else
            m_data[name.qstring()] = value;
    }
    bool hasProperty(ExecState* exec, const Identifier& name) const override
    {
        m_log->append("has " + name.qstring());
        return m_data.count(name.qstring()) > 0 || ObjectImp::hasProperty(exec, name);
    }
    bool deleteProperty(ExecState* exec, const Identifier& name) override
    {
        return m_data.erase(name.qstring()) > 0 || ObjectImp::deleteProperty(exec, name);
    }
    ReferenceList propList(ExecState* exec, bool recursive) override
    {
        ReferenceList list = ObjectImp::propList(exec, recursive);
        for (const auto& entry : m_data)
            list.append(Reference(Object(this), entry.first));
        return list;
    }

private:
    std::map<QString, Value> m_data;
    QStringList* m_log;
};

const ClassInfo Box::info = {"Box", nullptr};

class ObjectsTest : public EngineTest
{
protected:
    ObjectsTest() { global.put(exec, "box", new Box(exec, &log)); }
    QStringList log;
};

TEST_F(ObjectsTest, OverriddenOperationsServeScripts)
{
    const struct
    {
        const char* code;
        const char* result;
    } cases[] = {
        {"box.alpha + box.beta", "1two"},
        {"box.gamma", "(none)"},
        {"box.hidden", "42"},
        {"['alpha' in box, 'gamma' in box, 'hidden' in box, 'toString' in box].join()",
         "true,false,false,true"},
        {"box.gamma = 3; box.gamma", "3"},
        {"box.gamma += 4; box.gamma", "7"},
        {"var names = []; for (const name in box) names.push(name); names.join()", "alpha,beta,gamma"},
        {"Object.keys(box).join()", "alpha,beta,gamma"},
        {"JSON.stringify(box)", R"({"alpha":1,"beta":"two","gamma":7})"},
        {"delete box.gamma", "true"},
        {"'gamma' in box", "false"},
        {"box._own = 5; box._own + ',' + box.hasOwnProperty('_own')", "5,true"},
        {"Object.keys(box).sort().join()", "_own,alpha,beta"},
        {"delete box._own; box._own", "(none)"},
        {"box.toString()", "[object Box]"},
        {"typeof box", "object"},
        {"box.hasOwnProperty('toString')", "false"},
        {"box.locked = 1", "throws Error: locked is locked"},
        {"try { box.locked = 1 } catch (e) { e.message }", "locked is locked"},
        {"Reflect.has(box, 'alpha')", "true"},
        {"box['alp' + 'ha']", "1"},
        {"box?.alpha ?? 'none'", "1"},
        {"const {alpha, nothing = 'default'} = box; alpha + nothing", "1default"},
        {"box == box", "true"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(run(each.code), each.result) << each.code;
}

TEST_F(ObjectsTest, EnumerationAndInReadNothing)
{
    run("for (const name in box) {} 'alpha' in box; Object.keys(box);");
    EXPECT_FALSE(log.contains("get alpha")) << log.join("; ").toStdString();
    EXPECT_FALSE(log.contains("get beta"));
    log.clear();
    run("box.alpha");
    EXPECT_EQ(log.count("get alpha"), 1);
    log.clear();
    run("box.nothing");
    EXPECT_EQ(log.count("get nothing"), 1) << "the base's look-up must not ask the override again";
}

TEST_F(ObjectsTest, LanguageSymbolsStayWithScript)
{
    EXPECT_EQ(run("box[Symbol.iterator] === undefined && !(Symbol.toPrimitive in box)"), "true");
    EXPECT_EQ(run("box[Symbol.toStringTag] = 'Tagged'; Object.prototype.toString.call(box)"),
              "[object Tagged]");
    EXPECT_EQ(log.filter("Symbol").join(", "), "");
}

TEST_F(ObjectsTest, CppSeesTheSameObject)
{
    Object box = object("box");
    EXPECT_TRUE(box.inherits(&Box::info));
    EXPECT_EQ(box.className(), UString("Box"));
    EXPECT_EQ(object("box").imp(), box.imp());
    EXPECT_EQ(object("[box][0]").imp(), dynamic_cast<Box*>(box.imp()));
    EXPECT_FALSE(object("({})").inherits(&Box::info));
    EXPECT_FALSE(Object().inherits(&Box::info));
    QStringList names;
    run("Object.prototype.inherited = 1");
    for (const Reference& reference : box.propList(exec, true))
        names << reference.getPropertyName(exec).qstring();
    EXPECT_EQ(names.join(","), "inherited,alpha,beta");
    ReferenceList own =
        object("Object.create({a: 1}, {b: {value: 2, enumerable: true}})").propList(exec, false);
    ASSERT_EQ(own.length(), 1);
    EXPECT_EQ(own.begin()->getValue(exec).toInt32(exec), 2);
}

TEST_F(ObjectsTest, ScriptObjectsKeepTheirImplementation)
{
    const Object function = object("(f = function named(a, b) { return this.x + a + b })");
    EXPECT_EQ(function.imp(), object("f").imp());
    EXPECT_TRUE(function.implementsCall());
    Object receiver = object("({x: 'x'})");
    List arguments;
    arguments.append(Number(1));
    arguments.append(String("z"));
    EXPECT_EQ(textOf(interpreter, Object(function).call(exec, receiver, arguments)), "x1z");
    Object array = interpreter.builtinArray().construct(exec, List::empty());
    array.put(exec, 0u, String("first"));
    array.put(exec, 2u, Number(3));
    global.put(exec, "array", array);
    EXPECT_EQ(run("JSON.stringify(array)"), R"(["first",null,3])");
    EXPECT_EQ(array.get(exec, 2u).toInt32(exec), 3);
    EXPECT_EQ(array.get(exec, "length").toInt32(exec), 3);
    List fields;
    for (const int field : {2024, 1, 29, 13, 14, 15, 16})
        fields.append(Number(field));
    global.put(exec, "date", interpreter.builtinDate().construct(exec, fields));
    EXPECT_EQ(run("[date.getMonth(), date.getDate(), date.getMilliseconds()].join()"), "1,29,16");
}

TEST_F(ObjectsTest, ClassNamesOfScriptObjects)
{
    const char* const cases[][2] = {{"({})", "Object"},
                                    {"[]", "Array"},
                                    {"(function(){})", "Function"},
                                    {"(class A {})", "Function"},
                                    {"new (class A {})", "Object"},
                                    {"new Date", "Date"},
                                    {"/x/", "RegExp"},
                                    {"new TypeError", "Error"},
                                    {"new Map", "Map"},
                                    {"new Number(1)", "Number"},
                                    {"Object.create(null)", "Object"}};
    for (const auto& each : cases)
        EXPECT_EQ(object(each[0]).className(), UString(each[1])) << each[0];
}

TEST_F(ObjectsTest, BuiltinsAreTheOriginals)
{
    run("Array = 1; Object.prototype.constructor = 2; Date = undefined; TypeError = null;");
    EXPECT_EQ(interpreter.builtinArray().construct(exec, List::empty()).className(), UString("Array"));
    EXPECT_EQ(interpreter.builtinObject().construct(exec, List::empty()).prototype().imp(),
              interpreter.builtinObjectPrototype().imp());
    EXPECT_EQ(Error::create(exec, TypeError, "x").prototype().imp(),
              interpreter.builtinErrorPrototype(TypeError).imp());
    EXPECT_EQ(interpreter.builtinErrorPrototype(URIError).get(exec, "name").toString(exec),
              UString("URIError"));
}

// Attributes, accessors, prototypes ---------------------------------------------------------------

TEST_F(ObjectsTest, AttributesHold)
{
    // once put before the object is the engine's, once after
    for (const bool isBorn : {false, true}) {
        Object plain(new ObjectImp(interpreter.builtinObjectPrototype()));
        if (isBorn)
            global.put(exec, "plain", plain);
        plain.putDirect("constant", Number(1), ReadOnly | DontDelete);
        plain.put(exec, "quiet", Number(2), DontEnum);
        plain.putDirect("toString", Number(3), DontEnum); // hides an inherited one
        plain.put(exec, "open", Number(4));
        if (!isBorn)
            global.put(exec, "plain", plain);
        EXPECT_EQ(run("plain.constant = 9; plain.open = 5; [plain.constant, plain.quiet, plain.toString, "
                      "plain.open]"
                      ".join()"),
                  "1,2,3,5");
        EXPECT_EQ(run("(function(){ 'use strict'; plain.constant = 9 })()").left(17), "throws TypeError:");
        EXPECT_EQ(run("delete plain.constant || delete plain.quiet && 'quiet' in plain"), "false");
        EXPECT_EQ(run("Object.keys(plain).join()"), "constant,open");
        EXPECT_EQ(run("JSON.stringify(Object.getOwnPropertyDescriptor(plain, 'constant'))"),
                  R"({"value":1,"writable":false,"enumerable":true,"configurable":false})");
    }
}

TEST_F(ObjectsTest, AccessorsCallTheirFunctions)
{
    for (const bool isBorn : {false, true}) {
        Object owner(new ObjectImp(interpreter.builtinObjectPrototype()));
        if (isBorn)
            global.put(exec, "owner", owner);
        double stored = 1;
        owner.defineGetter(exec, "level",
                           new NativeFunction([&](ExecState* state, Object& self, const List&) -> Value {
                               return Number(stored + self.get(state, "offset").toNumber(state));
                           }));
        owner.put(exec, "offset", Number(10));
        if (!isBorn)
            global.put(exec, "owner", owner);
        EXPECT_EQ(run("owner.level"), "11");
        EXPECT_EQ(run("owner.level = 5; owner.level"), "11") << "no setter yet";
        owner.defineSetter(exec, "level",
                           new NativeFunction([&](ExecState* state, Object&, const List& arguments) -> Value {
                               stored = arguments.at(0).toNumber(state);
                               return Undefined();
                           }));
        EXPECT_EQ(run("owner.level = 5; owner.level"), "15");
        EXPECT_EQ(owner.get(exec, "level").toNumber(exec), 15);
        owner.put(exec, "level", Number(7));
        EXPECT_EQ(stored, 7);
        EXPECT_EQ(run("var d = Object.create(owner); d.offset = 100; d.level = 1; d.level + ',' + "
                      "d.hasOwnProperty('level')"),
                  "101,false");
    }
}

TEST_F(ObjectsTest, WithoutPrototypeThereIsNothing)
{
    define("bare", [](ExecState*, Object&, const List&) -> Value { return Number(1); });
    EXPECT_EQ(run("[typeof bare, bare(), typeof bare.call, typeof bare.toString, "
                  "Object.getPrototypeOf(bare)].join()"),
              "function,1,undefined,undefined,");
    EXPECT_EQ(run("'' + bare").left(17), "throws TypeError:");
    Object plain(new ObjectImp);
    EXPECT_TRUE(plain.prototype().isNull());
    plain.setPrototype(interpreter.builtinArrayPrototype());
    global.put(exec, "plain", plain);
    EXPECT_EQ(run("typeof plain.map"), "function");
    plain.setPrototype(Object());
    EXPECT_EQ(run("typeof plain.map"), "undefined");
    // functions made with the function prototype have what functions have
    global.put(exec, "full", new InternalFunctionImp(interpreter.builtinFunctionPrototype(), "fullName"));
    EXPECT_EQ(run("[typeof full.call, full.name, typeof full.bind(null)].join()"),
              "function,fullName,function");
}

/** A namespace whose members only `get` knows, and that drops assignments. */
class Facts : public ObjectImp
{
public:
    Value get(ExecState* exec, const Identifier& name) const override
    {
        return name == "answer" ? Value(Number(42)) : ObjectImp::get(exec, name);
    }
    void put(ExecState*, const Identifier&, const Value&, int) override {}
};

TEST_F(ObjectsTest, GetAloneMakesAPropertyThere)
{
    Object facts(new Facts);
    facts.putDirect("own", Number(7), DontDelete);
    global.put(exec, "facts", facts);
    EXPECT_EQ(run("facts.answer = 1; facts.own = 1; facts.fresh = 1; [facts.answer, facts.own, "
                  "facts.fresh].join()"),
              "42,7,");
    EXPECT_EQ(run("['answer' in facts, 'own' in facts, 'fresh' in facts, 'toString' in facts].join()"),
              "true,true,false,false");
    EXPECT_EQ(run("Object.keys(facts).join()"), "own");
    EXPECT_EQ(run("delete facts.own"), "false");
}

/** An instance class and its prototype class that is derived from it, as script objects here come. */
class Instance : public ObjectImp
{
public:
    explicit Instance(const Object& prototype, int size) : ObjectImp(prototype), m_size(size) {}
    Value get(ExecState* exec, const Identifier& name) const override
    {
        return name == "size" ? Value(Number(m_size)) : ObjectImp::get(exec, name);
    }
    void put(ExecState* exec, const Identifier& name, const Value& value, int attributes) override
    {
        if (name == "size")
            m_size = value.toInt32(exec);
        else
            ObjectImp::put(exec, name, value, attributes);
    }

private:
    int m_size;
};

/** Makes each property when it is first asked for. */
class LazyMembers : public ObjectImp
{
public:
    Value get(ExecState* exec, const Identifier& name) const override
    {
        const Value own = ObjectImp::get(exec, name);
        if (!own.isUndefined() || !name.qstring().startsWith("made"))
            return own;
        ++m_made;
        const Value made = new InternalFunctionImp;
        const_cast<LazyMembers*>(this)->putDirect(name, made);
        return made;
    }

    mutable int m_made = 0;
};

TEST_F(ObjectsTest, AnOverrideMayDefineWhatItDoesNotFind)
{
    auto* const maker = new LazyMembers;
    global.put(exec, "maker", maker);
    EXPECT_EQ(run("[maker.made1 === maker.made1, Object.keys(maker).length, typeof maker.other].join(' ')"),
              "true 1 undefined");
    EXPECT_EQ(1, maker->m_made);
}

TEST_F(ObjectsTest, AssignmentsReachTheInstanceNotItsPrototype)
{
    Object prototype(new Instance(interpreter.builtinObjectPrototype(), -1));
    prototype.putDirect("method",
                        new NativeFunction([](ExecState* state, Object& self, const List&) -> Value {
                            return self.get(state, "size");
                        }));
    global.put(exec, "proto", prototype);
    global.put(exec, "one", new Instance(prototype, 1));
    global.put(exec, "two", new Instance(prototype, 2));
    EXPECT_EQ(run("one.size = 10; [one.size, two.size, proto.size, one.method(), two.method()].join()"),
              "10,2,-1,10,2");
    EXPECT_EQ(run("one.extra = 'x'; [one.extra, two.extra, proto.extra, one.hasOwnProperty('extra')].join()"),
              "x,,,true");
}

// Calls -----------------------------------------------------------------------------------------

/** Callable, constructible, with a primitive form of its own. */
class Maker : public ObjectImp
{
public:
    explicit Maker(const Object& prototype) : ObjectImp(prototype) {}
    bool implementsCall() const override { return true; }
    Value call(ExecState* exec, Object& self, const List& arguments) override
    {
        const bool isGlobal = self.imp() == exec->interpreter()->globalObject().imp();
        return String(QStringLiteral("%1:%2").arg(arguments.size()).arg(isGlobal ? "global" : "object"));
    }
    bool implementsConstruct() const override { return true; }
    Object construct(ExecState* exec, const List& arguments) override
    {
        if (arguments.isEmpty())
            return Object();
        Object made(new ObjectImp(Object::dynamicCast(get(exec, "prototype"))));
        made.put(exec, "value", arguments.at(0));
        return made;
    }
    Value defaultValue(ExecState*, Type hint) const override
    {
        return hint == StringType ? Value(String("maker")) : Value(Number(5));
    }
};

TEST_F(ObjectsTest, CallsAndConstruction)
{
    Object maker(new Maker(interpreter.builtinObjectPrototype()));
    Object prototype(new ObjectImp(interpreter.builtinObjectPrototype()));
    prototype.put(exec, "kind", String("made"));
    maker.put(exec, "prototype", prototype);
    prototype.put(exec, "constructor", maker, DontEnum);
    global.put(exec, "Maker", maker);
    const char* const cases[][2] = {
        {"typeof Maker", "function"},
        {"Maker(1, 2)", "2:global"},
        {"({m: Maker}).m()", "0:object"},
        {"[1, 2].map(Maker).join()", "3:global,3:global"},
        {"var m = new Maker('v'); m.value + m.kind", "vmade"},
        {"m instanceof Maker", "true"},
        {"({}) instanceof Maker", "false"},
        {"m.constructor === Maker", "true"},
        {"new Maker()", "throws TypeError: The constructor made no object"},
        {"`${Maker}` + (Maker + 1)", "maker6"},
        {"new box()", "throws TypeError: Box is not a constructor (evaluating 'new box()')"},
        {"box()", "throws TypeError: box is not a function. (In 'box()', 'box' is an instance of Box)"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(run(each[0]), each[1]) << each[0];
    EXPECT_EQ(maker.toPrimitive(exec, NumberType).toNumber(exec), 5);
}

// The global object -------------------------------------------------------------------------------

class World : public ObjectImp
{
public:
    explicit World(QStringList* log) : m_log(log) {}
    UString className() const override { return UString("global"); }
    Value get(ExecState* exec, const Identifier& name) const override
    {
        const Value own = ObjectImp::get(exec, name);
        if (!own.isUndefined())
            return own;
        m_log->append(name.qstring());
        if (name == "broken")
            exec->setException(Error::create(exec, GeneralError, UString("broken is broken")));
        return name == "Widget" ? Value(String("a class")) : Value(Undefined());
    }
    bool hasProperty(ExecState* exec, const Identifier& name) const override
    {
        return name == "Widget" || ObjectImp::hasProperty(exec, name);
    }
    ReferenceList propList(ExecState* exec, bool recursive) override
    {
        ReferenceList list = ObjectImp::propList(exec, recursive);
        list.append(Reference(Object(const_cast<World*>(this)), "Widget"));
        return list;
    }

private:
    QStringList* m_log;
};

TEST(GlobalObjectTest, MissesReachCpp)
{
    QStringList log;
    Object world(new World(&log));
    world.putDirect("early", Number(1), ReadOnly | DontDelete);
    Interpreter interpreter(world, testOptions());
    EXPECT_EQ(interpreter.globalObject().imp(), world.imp());
    log.clear();
    const char* const cases[][2] = {
        {"early = 5; early", "1"},
        {"Widget", "a class"},
        {"typeof Widget + typeof nothing", "stringundefined"},
        {"nothing", "throws ReferenceError: Can't find variable: nothing"},
        {"broken", "throws Error: broken is broken"},
        {"'Widget' in globalThis", "true"},
        {"'nothing' in globalThis", "false"},
        {"var names = []; for (const n in globalThis) names.push(n); names.includes('Widget')", "true"},
        {"function declared() { return 'd' } var assigned = 2; let lexical = 3; declared() + assigned + "
         "lexical",
         "d23"},
        {"globalThis.declared === declared && this.assigned", "2"},
        {"var Widget = 'mine'; Widget", "mine"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(run(interpreter, each[0]), each[1]) << each[0];
    ExecState* const exec = interpreter.globalExec();
    EXPECT_EQ(textOf(interpreter, world.get(exec, "declared")).left(17), "function declared");
    log.clear();
    run(interpreter, "Math.max(1, 2); new Array(3); assigned; declared(); JSON; undefined");
    EXPECT_EQ(log.join(","), "") << "what is there costs no call";
    world.put(exec, "late", Number(8), DontEnum);
    EXPECT_EQ(run(interpreter, "late"), "8");
}

} // namespace
} // namespace KJS
