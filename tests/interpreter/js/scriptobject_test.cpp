#include "interpreter/js/scriptobject/scriptobject.h"

#include "engine/collector.h"
#include "interpreter/js/scripttest.h"

namespace {

using namespace Torvix;

/** The C++ half of the family below. */
struct Counter
{
    explicit Counter(int start) : value(start) { ++alive; }
    ~Counter() { --alive; }
    Counter(const Counter&) = delete;
    Counter& operator=(const Counter&) = delete;

    int value;
    static inline int alive = 0;
};

class JsCounterInstanceImp : public WithProperties<JsCounterInstanceImp>
{
public:
    static const KJS::ClassInfo info;
    static constexpr const char* invalidObject = "Invalid Counter object";
    static const JsPropertyRow<JsCounterInstanceImp> properties[];

    JsCounterInstanceImp(const KJS::Object& prototype, std::unique_ptr<Counter> half)
        : WithProperties(prototype)
        , counter(std::move(half))
    {
    }
    const KJS::ClassInfo* classInfo() const override { return &info; }
    bool isValid() const { return bool(counter); }

    std::unique_ptr<Counter> counter;
};

KJS::Value readValue(KJS::ExecState*, const JsCounterInstanceImp& self)
{
    return self.counter ? KJS::Number(self.counter->value) : KJS::Value();
}

void writeValue(KJS::ExecState* exec, JsCounterInstanceImp& self, const KJS::Value& value)
{
    if (!self.isValid())
        generalError(exec, JsCounterInstanceImp::invalidObject);
    else if (value.type() != KJS::NumberType)
        typeError(exec, "value must be a number");
    else
        self.counter->value = value.toInt32(exec);
}

KJS::Value readHalf(KJS::ExecState*, const JsCounterInstanceImp& self)
{
    return KJS::Number(self.counter ? self.counter->value / 2.0 : -1);
}

const KJS::ClassInfo JsCounterInstanceImp::info = {"Counter"};
const JsPropertyRow<JsCounterInstanceImp> JsCounterInstanceImp::properties[] = {
    {"value", readValue, writeValue},
    {"half", readHalf},
    {nullptr},
};

KJS::Value jsCounterAdd(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args)
{
    if (!hasArguments(exec, args, 1, "add() requires a number"))
        return exec->exception();
    auto* self = unwrapThis<JsCounterInstanceImp>(exec, thisObj);
    if (!self)
        return exec->exception();
    self->counter->value += args[0].toInt32(exec);
    return KJS::Number(self->counter->value);
}

const JsFunctionRow methods[] = {
    {"add", jsCounterAdd, 1},
    {nullptr, nullptr, 0},
};

const JsConstantRow constants[] = {
    {"Least", -5},
    {"Most", 5},
    {nullptr, 0},
};

class JsCounterPrototypeImp : public JsCounterInstanceImp
{
public:
    explicit JsCounterPrototypeImp(KJS::ExecState* exec)
        : JsCounterInstanceImp(exec->interpreter()->builtinObjectPrototype(), nullptr)
    {
        putFunctions(this, methods);
        putConstants(this, constants);
    }
};

class JsCounterImp : public JsConstructorImp
{
public:
    explicit JsCounterImp(KJS::ExecState* exec) : JsConstructorImp(exec, new JsCounterPrototypeImp(exec)) {}

    KJS::Object construct(KJS::ExecState* exec, const KJS::List& args) override
    {
        if (!hasArguments(exec, args, 1, "Counter takes a number"))
            return KJS::Object();
        return new JsCounterInstanceImp(instancePrototype(exec),
                                        std::make_unique<Counter>(args[0].toInt32(exec)));
    }
};

/** A family as it stands in the header. */
class ScriptObjectTest : public ScriptTest
{
protected:
    ScriptObjectTest() { global().put(exec(), "Counter", makeGlobal<JsCounterImp>(exec())); }
};

TEST_F(ScriptObjectTest, AnInstanceReadsAndWritesItsTableAndStoresTheRest)
{
    EXPECT_EQ(text("var c = new Counter(4); c.value += 3; [c.value, c.half, c.add(1), c.value].join()"),
              "7,3.5,8,8");
    EXPECT_EQ(thrown("c.value = 'x'"), "TypeError: value must be a number");
    EXPECT_EQ(text("c.half = 1; c.extra = 2; [c.value, c.half, c.extra].join()"), "8,4,2")
        << "a row without a write is assigned like any property, and read by its row";
    EXPECT_EQ(text("[c, {}].map(o => o instanceof Counter).join()"), "true,false");
    EXPECT_EQ(text("var d = new Counter(1); [d.value, d.extra, d.add === c.add].join()"), "1,,true");
}

TEST_F(ScriptObjectTest, ThePrototypeIsAnInstanceWithoutItsHalfAndTheConstructorHasWhatItHas)
{
    EXPECT_EQ(text("[Counter.prototype.value, Counter.prototype.half, Counter.half, Counter.Most,"
                   " Object.getPrototypeOf(Counter) === Counter.prototype].join()"),
              ",-1,-1,5,true");
    EXPECT_EQ(text("Counter.Most = 6; delete Counter.prototype.Least; Counter.prototype = 1;"
                   "[Counter.Most, Counter.Least, typeof Counter.prototype, typeof Counter].join()"),
              "5,-5,object,object");
    EXPECT_EQ(text("Counter.own = 1; Counter.own"), "1");
}

TEST_F(ScriptObjectTest, ErrorsTellTheCountBeforeTheObject)
{
    EXPECT_EQ(thrown("var add = new Counter(1).add; ({add}).add()"), "SyntaxError: add() requires a number");
    EXPECT_EQ(thrown("({add: new Counter(1).add}).add(1)"), "Error: Invalid Counter object");
    EXPECT_EQ(thrown("Counter.prototype.add(1)"), "Error: Invalid Counter object");
    EXPECT_EQ(thrown("Counter.prototype.value = 1"), "Error: Invalid Counter object");
    EXPECT_EQ(thrown("new Counter()"), "SyntaxError: Counter takes a number");
    EXPECT_THAT(thrown("Counter(1)").toStdString(), testing::StartsWith("TypeError"));
    EXPECT_EQ(unwrap<JsCounterInstanceImp>(KJS::Number(1)), nullptr);
}

TEST_F(ScriptObjectTest, TheHalfGoesWithItsInstance)
{
    ASSERT_TRUE(run("var kept = new Counter(3); for (var i = 0; i < 10000; ++i) new Counter(i)"));
    while (KJS::Collector::collect()) {
    }
    EXPECT_LT(Counter::alive, 100) << "the stack may still hold some";
    EXPECT_EQ(text("kept.value"), "3");
    interpreter.reset();
    EXPECT_EQ(Counter::alive, 0);
}

} // namespace
