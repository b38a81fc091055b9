#include "launcher/process/processfacts.h"

#include <QFile>
#include <QVector>

#include <cstdlib>
#include <ctime>
#include <memory>

#include <dirent.h>
#include <unistd.h>

namespace Torvix {

namespace {

QByteArray procFile(qint64 pid, const char* name)
{
    QFile file(QStringLiteral("/proc/%1/%2").arg(QString::number(pid), QLatin1String(name)));
    return pid > 0 && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

qint64 milliseconds(quint64 ticks)
{
    return qint64(ticks) * 1000 / sysconf(_SC_CLK_TCK);
}

} // namespace

std::optional<ProcessStat> readProcessStat(qint64 pid)
{
    const QByteArray stat = procFile(pid, "stat");
    // The name stands in parentheses and may hold anything, also blanks and parentheses.
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    enum Field { State, Parent, Group, UserTime = 11, SystemTime, StartTime = 19 };
    if (fields.size() <= StartTime || fields[State].isEmpty())
        return std::nullopt;
    ProcessStat result;
    result.pid = int(pid);
    result.state = fields[State][0];
    result.parent = fields[Parent].toInt();
    result.group = fields[Group].toInt();
    result.cpuTicks = fields[UserTime].toULongLong() + fields[SystemTime].toULongLong();
    result.startTicks = fields[StartTime].toULongLong();
    return result;
}

QVector<ProcessStat> allProcesses()
{
    QVector<ProcessStat> all;
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir("/proc"), ::closedir);
    while (const dirent* entry = folder ? ::readdir(folder.get()) : nullptr) {
        if (const std::optional<ProcessStat> stat = readProcessStat(std::atoi(entry->d_name)))
            all.append(*stat);
    }
    return all;
}

bool isProcessRunning(qint64 pid)
{
    const std::optional<ProcessStat> stat = readProcessStat(pid);
    return stat && stat->isRunning();
}

bool isProcessStopped(qint64 pid)
{
    const std::optional<ProcessStat> stat = readProcessStat(pid);
    return stat && stat->isStopped();
}

QDateTime processStart(qint64 pid)
{
    const std::optional<ProcessStat> stat = readProcessStat(pid);
    timespec sinceBoot{};
    if (!stat || clock_gettime(CLOCK_BOOTTIME, &sinceBoot) != 0)
        return {};
    const qint64 bootedMs = qint64(sinceBoot.tv_sec) * 1000 + sinceBoot.tv_nsec / 1'000'000;
    return QDateTime::currentDateTime().addMSecs(milliseconds(stat->startTicks) - bootedMs);
}

qint64 cpuTimeMs(qint64 pid)
{
    const std::optional<ProcessStat> stat = readProcessStat(pid);
    return stat ? milliseconds(stat->cpuTicks) : 0;
}

qint64 residentBytes(qint64 pid)
{
    return procFile(pid, "statm").split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

QString processFolder(qint64 pid)
{
    return pid > 0 ? QFile::symLinkTarget(QStringLiteral("/proc/%1/cwd").arg(pid)) : QString();
}

QList<QByteArray> processEnvironment(qint64 pid)
{
    QList<QByteArray> variables = procFile(pid, "environ").split('\0');
    variables.removeAll(QByteArray());
    return variables;
}

} // namespace Torvix
