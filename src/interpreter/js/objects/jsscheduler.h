#pragma once

#include "engine/delayedinvocation.h"

#include <QObject>

#include <atomic>

namespace KJS {
class ExecState;
}

namespace Torvix {

class Debugger;

/**
 * Lets an extension module have work done on the interpreter's thread: it runs in that thread's event
 * loop, which a script gives its turn wherever it waits.
 *
 * There is one in a process. It is a child of the debugger of the interpreter that it serves, but outlives
 * it: work that arrives after that interpreter's end is dropped, and another interpreter can have it.
 */
class JsScheduler : public QObject, public KJS::DelayedInvocationScheduler
{
    Q_OBJECT

public:
    /** The scheduler of the process; a new or an unused one serves this interpreter from now on. */
    static JsScheduler* instance(Debugger* debugger, KJS::ExecState* globalExec);

    void schedule(KJS::DelayedInvocation* invocation) override;

protected:
    void customEvent(QEvent* event) override;

private:
    JsScheduler() = default;
    void serve(Debugger* debugger, KJS::ExecState* globalExec);
    void abandon();

    std::atomic<KJS::ExecState*> m_exec{nullptr};
    std::atomic<int> m_interpreterCount{0}; ///< tells work for an interpreter that has ended
};

} // namespace Torvix
