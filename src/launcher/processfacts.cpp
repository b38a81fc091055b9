#include "launcher/processfacts.h"

#include <QFile>
#include <QFileInfo>

#include <ctime>

#include <unistd.h>

namespace Torvix {

namespace {

QByteArray procFile(qint64 pid, const char* name)
{
    QFile file(QStringLiteral("/proc/%1/%2").arg(QString::number(pid), QLatin1String(name)));
    return pid > 0 && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/** The fields behind the name, which stands in parentheses and may hold blanks. */
QList<QByteArray> statFields(qint64 pid)
{
    const QByteArray stat = procFile(pid, "stat");
    return stat.mid(stat.lastIndexOf(')') + 2).split(' ');
}

} // namespace

qint64 residentBytes(qint64 pid)
{
    return procFile(pid, "statm").split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

qint64 cpuTimeMs(qint64 pid)
{
    const QList<QByteArray> fields = statFields(pid);
    constexpr int userTime = 11;
    constexpr int systemTime = 12;
    const qint64 ticks = fields.value(userTime).toLongLong() + fields.value(systemTime).toLongLong();
    return ticks * 1000 / sysconf(_SC_CLK_TCK);
}

bool isProcessRunning(qint64 pid)
{
    const QByteArray state = statFields(pid).value(0);
    return !state.isEmpty() && state != "Z" && state != "X";
}

QDateTime processStart(qint64 pid)
{
    constexpr int startTime = 19;
    const qint64 ticks = statFields(pid).value(startTime).toLongLong();
    timespec sinceBoot{};
    if (ticks <= 0 || clock_gettime(CLOCK_BOOTTIME, &sinceBoot) != 0)
        return {};
    const qint64 bootedMs = qint64(sinceBoot.tv_sec) * 1000 + sinceBoot.tv_nsec / 1'000'000;
    const qint64 ageMs = bootedMs - ticks * 1000 / sysconf(_SC_CLK_TCK);
    return QDateTime::currentDateTime().addMSecs(-ageMs);
}

QString processFolder(qint64 pid)
{
    return pid > 0 ? QFile::symLinkTarget(QStringLiteral("/proc/%1/cwd").arg(pid)) : QString();
}

} // namespace Torvix
