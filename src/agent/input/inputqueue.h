#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>

#include <deque>
#include <functional>

namespace Torvix::Agent {

/**
 * Input to the application, a step in each turn of its event loop.
 *
 * The next step is scheduled before the current one runs: when a step opens a modal dialog, a menu or
 * a drag, the rest goes on in the event loop of that. Steps of several requests keep their order.
 */
class InputQueue : public QObject
{
public:
    enum class Step { Done, Again };
    using Action = std::function<Step()>;

    static InputQueue& instance();

    /** Adds a step; `Again` runs it once more in a later turn, for three seconds at most. May throw Error. */
    void post(Action action);
    /** A step that delivers no input itself: the steps that it adds come before the ones that wait. */
    void postPlanner(Action action);
    /** Adds a step that is done when it returns. */
    void postOnce(std::function<void()> action);

    /** How many steps were ever added, to see whether a call added some. */
    quint64 posted() const { return m_posted; }

    /**
     * Called after all steps so far, with what the first that failed said, else an empty text. When
     * one fails, the others of the same request are left out.
     */
    void whenDone(std::function<void(const QString& error)> done);

    /** The application ends: whoever waits is answered now. What ended it may have been the input, and
     *  what is left of that reaches nobody. */
    void finish();

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    struct Entry
    {
        Action action;
        std::function<void(const QString&)> done;
        bool isPlanner = false;
    };
    void add(Entry entry);
    void schedule(int delayMs);
    void runAction(Entry entry);

    std::deque<Entry> m_entries;
    quint64 m_posted = 0;
    QString m_error;
    /** Where a planner's steps are gathered while it runs; null else. */
    std::deque<Entry>* m_planned = nullptr;
    int m_timer = 0;
    QElapsedTimer m_trying;
    bool m_isRepeat = false;
};

} // namespace Torvix::Agent
