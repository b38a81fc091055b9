#include "agent/input/inputqueue.h"

#include "agent/reflection/error.h"

#include <QCoreApplication>
#include <QScopeGuard>
#include <QTimerEvent>

#include <iterator>

namespace Torvix::Agent {

constexpr int retryAfterMs = 5;
constexpr int giveUpAfterMs = 3000;

InputQueue& InputQueue::instance()
{
    static InputQueue queue;
    return queue;
}

void InputQueue::schedule(int delayMs)
{
    if (m_timer == 0)
        m_timer = startTimer(delayMs);
}

void InputQueue::add(Entry entry)
{
    (m_planned ? *m_planned : m_entries).push_back(std::move(entry));
    ++m_posted;
    schedule(0);
}

void InputQueue::post(Action action)
{
    add({std::move(action), {}, false});
}

void InputQueue::postPlanner(Action action)
{
    add({std::move(action), {}, true});
}

void InputQueue::postOnce(std::function<void()> action)
{
    post([action = std::move(action)] {
        action();
        return Step::Done;
    });
}

void InputQueue::whenDone(std::function<void(const QString&)> done)
{
    m_entries.push_back({{}, std::move(done), false});
    schedule(0);
}

void InputQueue::finish()
{
    for (const Entry& entry : std::exchange(m_entries, {}))
        if (entry.done)
            entry.done(std::exchange(m_error, QString()));
}

void InputQueue::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_timer)
        return;
    // A timer whose event is being delivered does not fire in a nested loop: the next is another one.
    killTimer(m_timer);
    m_timer = 0;
    if (m_entries.empty())
        return;
    Entry entry = std::move(m_entries.front());
    m_entries.pop_front();
    if (entry.done) {
        if (!m_entries.empty())
            schedule(0);
        entry.done(std::exchange(m_error, QString()));
    } else if (m_error.isEmpty()) {
        runAction(std::move(entry));
    } else {
        schedule(0);
    }
}

void InputQueue::runAction(Entry entry)
{
    if (!std::exchange(m_isRepeat, false))
        m_trying.start();
    if (!m_entries.empty())
        schedule(0);
    try {
        std::deque<Entry> planned;
        m_planned = entry.isPlanner ? &planned : m_planned;
        const auto stopPlanning = qScopeGuard([this, isPlanner = entry.isPlanner] {
            if (isPlanner)
                m_planned = nullptr;
        });
        const Step result = entry.action();
        m_entries.insert(m_entries.begin(), std::make_move_iterator(planned.begin()),
                         std::make_move_iterator(planned.end()));
        if (result == Step::Done)
            return;
        if (m_trying.elapsed() > giveUpAfterMs)
            throw Error(QStringLiteral("the application does not show what the action needs"));
        m_entries.push_front(std::move(entry));
        m_isRepeat = true;
        if (m_timer != 0)
            killTimer(std::exchange(m_timer, 0));
        schedule(retryAfterMs);
    } catch (const Error& error) {
        m_error = error.message();
    }
}

} // namespace Torvix::Agent
