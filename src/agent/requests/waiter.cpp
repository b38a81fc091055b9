#include "agent/requests/waiter.h"

#include "agent/reflection/error.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimerEvent>

namespace Torvix::Agent {

constexpr int shortestPollMs = 10;

Waiter& Waiter::instance()
{
    static Waiter waiter;
    return waiter;
}

void Waiter::wait(Check check, int timeoutMs, const Responder& responder)
{
    m_waits.push_back({std::move(check), timeoutMs, {}, responder});
    Wait& added = m_waits.back();
    added.started.start();
    if (look(added)) {
        m_waits.pop_back();
        return;
    }
    if (m_waits.size() == 1)
        QCoreApplication::instance()->installEventFilter(this);
    scheduleSoon();
}

bool Waiter::look(Wait& wait)
{
    QElapsedTimer timer;
    timer.start();
    QByteArray body;
    const bool isLast = wait.started.elapsed() >= wait.timeoutMs;
    try {
        if (wait.check(isLast, &body) || isLast)
            wait.responder.reply(body);
    } catch (const Error& error) {
        wait.responder.fail(error.kind(), error.message());
    }
    m_costNs = timer.nsecsElapsed();
    m_sinceLook.start();
    return wait.responder.isAnswered();
}

void Waiter::lookAtAll()
{
    // A getter that is read may run an event loop; its turn must not look again.
    if (m_isLooking)
        return;
    m_isLooking = true;
    for (auto it = m_waits.begin(); it != m_waits.end();)
        it = look(*it) ? m_waits.erase(it) : std::next(it);
    m_isLooking = false;
    if (m_waits.empty()) {
        m_poll.stop();
        m_soon.stop();
        QCoreApplication::instance()->removeEventFilter(this);
    }
}

void Waiter::scheduleSoon()
{
    const int costMs = int(m_costNs / 1000000);
    if (!m_poll.isActive())
        m_poll.start(qMax(shortestPollMs, 4 * costMs), this);
    if (m_soon.isActive())
        return;
    const qint64 since = m_sinceLook.isValid() ? m_sinceLook.elapsed() : costMs;
    m_soon.start(int(qMax<qint64>(0, costMs - since)), this);
}

bool Waiter::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Timer:
    case QEvent::SockAct:
    case QEvent::MetaCall:
    case QEvent::DeferredDelete:
        // What these cause shows in events of its own, or in the next poll.
        break;
    default:
        if (watched != this)
            scheduleSoon();
    }
    return false;
}

void Waiter::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_soon.timerId()) {
        m_soon.stop();
        lookAtAll();
    } else if (event->timerId() == m_poll.timerId()) {
        m_poll.stop();
        lookAtAll();
        if (!m_waits.empty())
            scheduleSoon();
    }
}

} // namespace Torvix::Agent
