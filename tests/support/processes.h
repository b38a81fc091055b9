#pragma once

#include "launcher/process/processfacts.h"

#include <QElapsedTimer>
#include <QThread>

namespace Torvix {

/** Waits for the end of a process that is not ours; a container without an init may keep it as a zombie. */
inline bool hasGone(qint64 pid)
{
    QElapsedTimer timer;
    for (timer.start(); isProcessRunning(pid) && timer.elapsed() < 10'000;)
        QThread::msleep(10);
    return !isProcessRunning(pid);
}

} // namespace Torvix
