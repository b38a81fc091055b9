#pragma once

#include "agent/session/dispatcher.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <vector>

namespace Torvix::Agent {

/**
 * Watches calls into the application that end up in an event loop of their own, a modal dialog above
 * all, so that the runner gets its answer though the call has not come back.
 *
 *     RunningCall running(responder, doneBody);   // on the stack, around the call
 *
 * After a quarter of a second in such a loop with a new dialog or popup, or after five seconds in any
 * other, the request is answered: with `doneBody`, or with ErrorClass::Blocked where that is null
 * because a value was asked for.
 */
class RunningCall
{
public:
    using MakeBody = std::function<QByteArray()>;

    RunningCall(const Responder& responder, const QByteArray& doneBody);
    /** The same with a body that is made when it is needed. */
    RunningCall(const Responder& responder, MakeBody doneBody);
    ~RunningCall();
    RunningCall(const RunningCall&) = delete;
    RunningCall& operator=(const RunningCall&) = delete;

private:
    friend class RunningCalls;
    void check();

    Responder m_responder;
    MakeBody m_doneBody;
    QElapsedTimer m_started;
    QPointer<QWidget> m_modalBefore;
    QPointer<QWidget> m_popupBefore;
};

} // namespace Torvix::Agent
