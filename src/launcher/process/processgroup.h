#pragma once

#include "launcher/process/processend.h"

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>

namespace Torvix {

class GroupGuard;

/**
 * A started process with everything that it starts in turn, found by its process group and by a
 * variable that they all inherit. Its output goes to files, so that it never waits for a reader. They
 * all end with this object, and also when this process is killed.
 */
class ProcessGroup
{
public:
    struct Command
    {
        /** Absolute path. */
        QString program;
        QStringList arguments;
        QString workingDirectory;
        QProcessEnvironment environment;
        /** A private folder for the output files. */
        QString folder;
        /** `NAME=value` in the environment of this group only. */
        QByteArray mark;
    };

    /** Null on failure, told in `*error`. */
    static std::unique_ptr<ProcessGroup> start(const Command& command, QString* error);
    ~ProcessGroup();
    ProcessGroup(const ProcessGroup&) = delete;
    ProcessGroup& operator=(const ProcessGroup&) = delete;

    int pid() const { return m_pid; }
    bool isRunning();
    /** Whether no process of the group is left. */
    bool isGone();
    /** Waits for the end of the first process. */
    bool waitForEnd(int timeoutMs);
    /** Of the first process. */
    ProcessEnd end();

    /** Processes of the group that run now, the first one included. */
    QVector<int> members();
    /** Asks them all to end, waits, and kills those that are left. */
    void stop(int graceMs);

    enum class Stream { Output, Error };
    /** What was written since the last call; a character that is cut stays for the next. */
    QString read(Stream stream);
    /** The last lines of a stream, at most `count`. */
    QStringList lastLines(Stream stream, int count) const;

private:
    ProcessGroup(int pid, const Command& command);
    void signalAll(int signal);

    int m_pid;
    QString m_folder;
    QByteArray m_mark;
    std::unique_ptr<GroupGuard> m_guard;
    ProcessEnd m_end;
    bool m_isGone = false;
    QVector<int> m_members; ///< as found last
    qint64 m_read[2] = {0, 0};
};

} // namespace Torvix
