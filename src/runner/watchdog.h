#pragma once

#include <QtGlobal>

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

namespace Torvix {

/**
 * Watches, on a thread of its own, for Ctrl-C (SIGINT, SIGTERM, SIGHUP) and for the end of a test case's
 * time, and has the running script stopped then. A second signal ends the process at once with
 * status 2.
 *
 * Make it before any other thread: it blocks the signals for the threads that come after.
 */
class Watchdog
{
public:
    enum class Reason { None, Timeout, Interrupt };

    Watchdog();
    ~Watchdog();
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

    /** From now on `stop` is called, on the watching thread, when the time is over or on a signal (also
     *  an earlier one), again and again until unwatch(). It must be safe to call there. */
    void watch(int timeoutMs, std::function<void()> stop);
    /** The script has ended: returns once `stop` is certain not to be called any more. */
    Reason unwatch();
    /** Why `stop` was called, if it was, while it is watched. */
    Reason reason();

    bool isInterrupted() const { return m_interrupted; }

private:
    void run();
    int look();
    void bark(Reason reason);

    std::mutex m_mutex;
    std::function<void()> m_stop;
    qint64 m_deadlineMs = 0; ///< monotonic; 0: none
    Reason m_reason = Reason::None;
    std::atomic<bool> m_interrupted{false};
    std::atomic<bool> m_ending{false};
    int m_signals = -1;
    int m_wake = -1;
    std::thread m_thread;
};

} // namespace Torvix
