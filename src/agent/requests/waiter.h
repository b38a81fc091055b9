#pragma once

#include "agent/session/dispatcher.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QObject>

#include <functional>
#include <list>

namespace Torvix::Agent {

/**
 * Requests that wait for something in the application.
 *
 * Their conditions are looked at when the application has handled events, at most as often as leaves
 * it half of its time; for changes that make no event also every few milliseconds.
 */
class Waiter : public QObject
{
public:
    static Waiter& instance();

    /**
     * Fills the body of the reply and answers true when the wait is over. At the timeout it is called
     * a last time with `isLast`, and must fill the body with what failed.
     */
    using Check = std::function<bool(bool isLast, QByteArray* body)>;

    /** Looks at once, so that what is there already is answered without a turn of the event loop. */
    void wait(Check check, int timeoutMs, const Responder& responder);

    /** For a check that needs a second look to be sure. */
    void lookAgain() { scheduleSoon(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    struct Wait
    {
        Check check;
        int timeoutMs;
        QElapsedTimer started;
        Responder responder;
    };
    bool look(Wait& wait);
    void lookAtAll();
    void scheduleSoon();

    std::list<Wait> m_waits;
    QBasicTimer m_soon;
    QBasicTimer m_poll;
    QElapsedTimer m_sinceLook;
    qint64 m_costNs = 0;
    bool m_isLooking = false;
};

} // namespace Torvix::Agent
