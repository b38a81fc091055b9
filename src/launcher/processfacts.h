#pragma once

#include "launcher/export.h"

#include <QDateTime>
#include <QString>

namespace Torvix {

/** What Linux tells of a process under /proc; neutral values when it has gone or is not ours to see. */
TORVIXLAUNCHER_EXPORT qint64 residentBytes(qint64 pid);
TORVIXLAUNCHER_EXPORT qint64 cpuTimeMs(qint64 pid);
/** False for one that has ended and is only still waited for. */
TORVIXLAUNCHER_EXPORT bool isProcessRunning(qint64 pid);
/** In local time, to a hundredth of a second; invalid when it has gone. */
TORVIXLAUNCHER_EXPORT QDateTime processStart(qint64 pid);
TORVIXLAUNCHER_EXPORT QString processFolder(qint64 pid);

} // namespace Torvix
