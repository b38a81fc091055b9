#pragma once

#include "interpreter/base/runnerinterface.h"

namespace Torvix {

/** Keeps the runner in the remote object model for the length of an access; does nothing without one. */
class RemoteObjectModelHolder
{
public:
    /** Borrows the runner, which may be null. */
    explicit RemoteObjectModelHolder(RunnerInterface* runner)
        : m_runner(runner)
        , m_entered(runner && runner->enterRemoteObjectModel())
    {
    }
    ~RemoteObjectModelHolder()
    {
        if (m_entered)
            m_runner->leaveRemoteObjectModel();
    }
    RemoteObjectModelHolder(const RemoteObjectModelHolder&) = delete;
    RemoteObjectModelHolder& operator=(const RemoteObjectModelHolder&) = delete;

private:
    RunnerInterface* m_runner;
    bool m_entered;
};

} // namespace Torvix
