#include "runner/watchdog.h"

#include <chrono>
#include <csignal>
#include <cstdint>

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace Torvix {

namespace {

constexpr int interruptedStatus = 2;
constexpr int repeatMs = 50;

qint64 nowMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

sigset_t watchedSignals()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    // The terminal has been closed; under nohup nobody wants to know.
    struct sigaction hangup = {};
    if (sigaction(SIGHUP, nullptr, &hangup) == 0 && hangup.sa_handler != SIG_IGN)
        sigaddset(&set, SIGHUP);
    return set;
}

} // namespace

Watchdog::Watchdog()
{
    const sigset_t signals = watchedSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    m_signals = signalfd(-1, &signals, SFD_CLOEXEC);
    m_wake = eventfd(0, EFD_CLOEXEC);
    m_thread = std::thread(&Watchdog::run, this);
}

Watchdog::~Watchdog()
{
    m_ending = true;
    eventfd_write(m_wake, 1);
    m_thread.join();
    close(m_signals);
    close(m_wake);
    const sigset_t signals = watchedSignals();
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

void Watchdog::watch(int timeoutMs, std::function<void()> stop)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = std::move(stop);
        m_deadlineMs = timeoutMs > 0 ? nowMs() + timeoutMs : 0;
        m_reason = m_interrupted ? Reason::Interrupt : Reason::None;
    }
    eventfd_write(m_wake, 1);
}

Watchdog::Reason Watchdog::unwatch()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_stop = nullptr;
    m_deadlineMs = 0;
    return m_reason;
}

Watchdog::Reason Watchdog::reason()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_reason;
}

void Watchdog::bark(Reason reason)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_stop && m_reason == Reason::None)
        m_reason = reason;
}

/** How long to wait, in milliseconds; negative without limit. Stops the script where it has to. */
int Watchdog::look()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_stop)
        return -1;
    const qint64 leftMs = m_deadlineMs - nowMs();
    if (m_reason == Reason::None && m_deadlineMs != 0 && leftMs <= 0)
        m_reason = Reason::Timeout;
    if (m_reason == Reason::None)
        return m_deadlineMs == 0 ? -1 : int(leftMs);
    // Repeated, since the script may have been about to start.
    m_stop();
    return repeatMs;
}

void Watchdog::run()
{
    while (!m_ending) {
        pollfd waited[] = {{m_signals, POLLIN, 0}, {m_wake, POLLIN, 0}};
        poll(waited, 2, look());
        if (waited[1].revents & POLLIN) {
            eventfd_t ignored;
            eventfd_read(m_wake, &ignored);
        }
        if (waited[0].revents & POLLIN) {
            signalfd_siginfo info;
            if (read(m_signals, &info, sizeof info) == sizeof info && m_interrupted.exchange(true))
                _exit(interruptedStatus);
            bark(Reason::Interrupt);
        }
    }
}

} // namespace Torvix
