// An extension module as somebody outside would build it: it knows the engine and nothing else of Torvix.
//
//     const library = new Library(".../libtally.so");
//     library.initModule("tally");      // installs the global `tally`
//     library.invoke("void countOne()");
//     tally.count();                    // 1
//     tally.soon(() => { ... });        // called in the event loop, asked for by another thread

#include "engine/delayedinvocation.h"
#include "engine/error.h"
#include "engine/function.h"
#include "engine/interpreter.h"

#include <atomic>
#include <set>
#include <thread>

#define TALLY_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

std::atomic<int> counted{0};

/** Calls a script function, once. What is never called, since its interpreter ended, stays in the list. */
class Soon : public KJS::DelayedInvocation
{
public:
    explicit Soon(const KJS::Object& function) : m_function(function) { pending().insert(this); }
    Soon(const Soon&) = delete;
    Soon& operator=(const Soon&) = delete;
    ~Soon() override { pending().erase(this); }

    void invoke(KJS::ExecState* exec) override
    {
        KJS::Object global = exec->interpreter()->globalObject();
        m_function.call(exec, global, KJS::List::empty());
        delete this;
    }

private:
    static std::set<Soon*>& pending()
    {
        static auto& all = *new std::set<Soon*>;
        return all;
    }

    KJS::Object m_function;
};

class Tally : public KJS::ObjectImp
{
public:
    enum Function { Count, SoonFunction };

    class Member : public KJS::ObjectImp
    {
    public:
        Member(Function function, KJS::DelayedInvocationScheduler* scheduler)
            : m_function(function)
            , m_scheduler(scheduler)
        {
        }
        bool implementsCall() const override { return true; }
        KJS::Value call(KJS::ExecState*, KJS::Object&, const KJS::List& args) override
        {
            if (m_function == Count)
                return KJS::Number(int(counted));
            auto* work = new Soon(KJS::Object::dynamicCast(args[0]));
            std::thread([scheduler = m_scheduler, work] { scheduler->schedule(work); }).join();
            return KJS::Undefined();
        }

    private:
        Function m_function;
        KJS::DelayedInvocationScheduler* m_scheduler;
    };

    explicit Tally(KJS::DelayedInvocationScheduler* scheduler)
    {
        putDirect("count", new Member(Count, scheduler));
        putDirect("soon", new Member(SoonFunction, scheduler));
    }
};

} // namespace

TALLY_EXPORT void tallyInit(KJS::ExecState* exec, KJS::DelayedInvocationScheduler* scheduler)
{
    exec->interpreter()->globalObject().put(exec, "tally", new Tally(scheduler));
}

TALLY_EXPORT void brokenInit(KJS::ExecState* exec, KJS::DelayedInvocationScheduler*)
{
    exec->setException(KJS::Error::create(exec, KJS::RangeError, "no tally today", -1, -1));
}

TALLY_EXPORT void countOne()
{
    ++counted;
}
