#pragma once

#include <QString>

namespace Torvix {

/** What Linux tells of a process under /proc; neutral values when it has gone or is not ours to see. */
qint64 residentBytes(qint64 pid);
qint64 cpuTimeMs(qint64 pid);
QString processFolder(qint64 pid);

} // namespace Torvix
