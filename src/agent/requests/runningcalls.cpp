#include "agent/requests/runningcalls.h"

#include "agent/lookup/namematcher.h"
#include "protocol/message.h"

#include <QApplication>
#include <QTimerEvent>

namespace Torvix::Agent {

constexpr int checkEveryMs = 50;
constexpr int dialogAfterMs = 250;
constexpr int loopAfterMs = 5000;

/** The calls on the stack, innermost last. Its timer fires only in an event loop that one of them runs. */
class RunningCalls : public QObject
{
public:
    static RunningCalls& instance()
    {
        static RunningCalls calls;
        return calls;
    }
    void enter(RunningCall* call)
    {
        if (m_calls.empty())
            m_timer.start(checkEveryMs, this);
        m_calls.push_back(call);
    }
    void leave(RunningCall* call)
    {
        m_calls.erase(std::remove(m_calls.begin(), m_calls.end(), call), m_calls.end());
        if (m_calls.empty())
            m_timer.stop();
    }

protected:
    void timerEvent(QTimerEvent* event) override
    {
        if (event->timerId() != m_timer.timerId())
            return;
        for (RunningCall* call : m_calls)
            call->check();
    }

private:
    QBasicTimer m_timer;
    std::vector<RunningCall*> m_calls;
};

RunningCall::RunningCall(const Responder& responder, const QByteArray& doneBody)
    : RunningCall(responder, [doneBody] { return doneBody; })
{
}

RunningCall::RunningCall(const Responder& responder, MakeBody doneBody)
    : m_responder(responder)
    , m_doneBody(std::move(doneBody))
    , m_modalBefore(QApplication::activeModalWidget())
    , m_popupBefore(QApplication::activePopupWidget())
{
    m_started.start();
    RunningCalls::instance().enter(this);
}

RunningCall::~RunningCall()
{
    RunningCalls::instance().leave(this);
}

void RunningCall::check()
{
    if (m_responder.isAnswered())
        return;
    QWidget* dialog = QApplication::activeModalWidget();
    if (dialog == m_modalBefore)
        dialog = QApplication::activePopupWidget();
    const bool isNew = dialog && dialog != m_modalBefore && dialog != m_popupBefore;
    if (m_started.elapsed() < (isNew ? dialogAfterMs : loopAfterMs))
        return;
    const QByteArray body = m_doneBody();
    if (!body.isNull()) {
        m_responder.reply(body);
        return;
    }
    m_responder.fail(
        Protocol::ErrorClass::Blocked,
        isNew ? QStringLiteral("the call opened %1 and has not come back").arg(describeObject(dialog))
              : QStringLiteral("the call runs an event loop and has not come back"));
}

} // namespace Torvix::Agent
