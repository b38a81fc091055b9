#include "interpreter/js/objects/jsscheduler.h"

#include "interpreter/base/debugger.h"

#include <QCoreApplication>
#include <QEvent>

namespace Torvix {

namespace {

constexpr auto delayedInvocationType = QEvent::Type(14792);

class DelayedInvocationEvent : public QEvent
{
public:
    DelayedInvocationEvent(KJS::ExecState* execState, KJS::DelayedInvocation* work, int interpreterNumber)
        : QEvent(delayedInvocationType)
        , exec(execState)
        , invocation(work)
        , interpreter(interpreterNumber)
    {
    }

    KJS::ExecState* const exec;
    KJS::DelayedInvocation* const invocation;
    const int interpreter;
};

} // namespace

JsScheduler* JsScheduler::instance(Debugger* debugger, KJS::ExecState* globalExec)
{
    static auto* const scheduler = new JsScheduler;
    if (!scheduler->parent())
        scheduler->serve(debugger, globalExec);
    return scheduler;
}

void JsScheduler::serve(Debugger* debugger, KJS::ExecState* globalExec)
{
    setParent(debugger);
    // Sent before it deletes its children: a module's thread may still have this pointer.
    connect(debugger, &QObject::destroyed, this, &JsScheduler::abandon);
    m_exec = globalExec;
}

void JsScheduler::abandon()
{
    ++m_interpreterCount;
    m_exec = nullptr;
    setParent(nullptr);
    QCoreApplication::removePostedEvents(this, delayedInvocationType);
}

void JsScheduler::schedule(KJS::DelayedInvocation* invocation)
{
    const int interpreter = m_interpreterCount;
    if (KJS::ExecState* exec = m_exec)
        QCoreApplication::postEvent(this, new DelayedInvocationEvent(exec, invocation, interpreter));
}

void JsScheduler::customEvent(QEvent* event)
{
    if (event->type() != delayedInvocationType)
        return;
    const auto* work = static_cast<DelayedInvocationEvent*>(event);
    if (work->interpreter == m_interpreterCount)
        work->invocation->invoke(work->exec);
}

} // namespace Torvix
