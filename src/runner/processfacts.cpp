#include "runner/processfacts.h"

#include <QFile>
#include <QFileInfo>

#include <unistd.h>

namespace Torvix {

namespace {

QByteArray procFile(qint64 pid, const char* name)
{
    QFile file(QStringLiteral("/proc/%1/%2").arg(QString::number(pid), QLatin1String(name)));
    return pid > 0 && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

qint64 residentBytes(qint64 pid)
{
    return procFile(pid, "statm").split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

qint64 cpuTimeMs(qint64 pid)
{
    // The name in parentheses may hold blanks: the fields are counted behind it.
    const QByteArray stat = procFile(pid, "stat");
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    constexpr int userTime = 11;
    constexpr int systemTime = 12;
    const qint64 ticks = fields.value(userTime).toLongLong() + fields.value(systemTime).toLongLong();
    return ticks * 1000 / sysconf(_SC_CLK_TCK);
}

QString processFolder(qint64 pid)
{
    return pid > 0 ? QFile::symLinkTarget(QStringLiteral("/proc/%1/cwd").arg(pid)) : QString();
}

} // namespace Torvix
