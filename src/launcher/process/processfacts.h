#pragma once

#include <QDateTime>
#include <QString>
#include <QVector>

#include <optional>

namespace Torvix {

/** What Linux tells of a process in /proc/PID/stat; see proc(5). */
struct ProcessStat
{
    int pid = 0;
    char state = '?'; ///< 'R' runs, 'S' and 'D' wait, 'T' and 't' are stopped, 'Z' and 'X' have ended
    int parent = 0;
    int group = 0;
    quint64 cpuTicks = 0;   ///< of its own and the system's code
    quint64 startTicks = 0; ///< since the machine started

    bool isRunning() const { return state != 'Z' && state != 'X'; }
    bool isStopped() const { return state == 'T' || state == 't'; }
};

/** Null when there is no such process. */
std::optional<ProcessStat> readProcessStat(qint64 pid);
/** In no order. What starts or ends meanwhile may be in it or not. */
QVector<ProcessStat> allProcesses();

/** False for one that has ended and is only still waited for. */
bool isProcessRunning(qint64 pid);
/** By a signal or a debugger. */
bool isProcessStopped(qint64 pid);
/** In local time, to a hundredth of a second; invalid when it has gone. */
QDateTime processStart(qint64 pid);
/** To a hundredth of a second; 0 when it has gone. */
qint64 cpuTimeMs(qint64 pid);
/** 0 when it has gone. */
qint64 residentBytes(qint64 pid);
/** The current folder; empty when it has gone or is not ours to see. */
QString processFolder(qint64 pid);
/** `NAME=value` as the process was started with. Empty when it has gone or is not ours to see. */
QList<QByteArray> processEnvironment(qint64 pid);

} // namespace Torvix
