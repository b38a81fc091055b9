#pragma once

#include <QString>

class QProcess;

namespace Torvix {

/** How a process ended, as far as it is known. */
struct ProcessEnd
{
    enum Kind {
        Running, ///< it has not ended
        Exited,  ///< `code` is its exit status
        Killed,  ///< `code` is the signal that ended it
        Quit,    ///< it said so before it went; its status is not ours to know
        Gone,    ///< without a word, and its status is not ours to know
    };

    Kind kind = Running;
    int code = 0;

    /** By itself and without an error: with status 0, or after it said that it quits. */
    bool isOrderly() const { return kind == Quit || (kind == Exited && code == 0); }
};

/** From the status that waitpid(2) gives of a process that has ended. */
ProcessEnd endOfStatus(int status);
ProcessEnd endOf(const QProcess& process);

/**
 * What to say of it behind its name or "it": "exited with status 3", "was killed by signal 9 (SIGKILL)",
 * "quit", "has gone", "is running".
 */
QString endText(const ProcessEnd& end);

} // namespace Torvix
