#pragma once

#include <QByteArray>

#include <cstddef>

namespace Torvix {

/**
 * Ends a group of processes when this process cannot do it any more.
 *
 * A small process of its own waits for the end of this one, however it comes (a KILL signal too), then
 * kills every process whose environment has the mark, in whatever session it is, and removes the
 * folder. It goes without doing anything with the destructor.
 */
class GroupGuard
{
public:
    /** @param mark `NAME=value`
     *  @param folder absolute path; files only */
    GroupGuard(const QByteArray& mark, const QByteArray& folder);
    ~GroupGuard();
    GroupGuard(const GroupGuard&) = delete;
    GroupGuard& operator=(const GroupGuard&) = delete;

    /** Whether the environment with which the process was started has this variable. False also when
     *  it is not ours to see. Needs no memory: safe between fork and exec. */
    static bool hasMark(int pid, const char* mark, std::size_t length);

private:
    int m_pid = -1;
    int m_lifeline = -1;
};

} // namespace Torvix
