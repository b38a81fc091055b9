#pragma once

#include <QString>
#include <QStringList>

namespace Torvix::Testing {

/** What one application was found to hold, and everything that was wrong. */
struct SweepResult
{
    /** False when its agent did not call back; the only fault then says why. */
    bool wasStarted = false;
    int objects = 0;
    int visibleObjects = 0;
    int properties = 0;
    int classes = 0;
    int methods = 0;
    QStringList faults;
    /** What it wrote to the standard error stream. */
    QString errorOutput;
};

/** What an application is started with for a sweep. */
struct SweepTarget
{
    QString program;
    QStringList arguments;
    /** QT_QPA_PLATFORM; others are of the environment. */
    QString platform = QStringLiteral("offscreen");
};

/**
 * Starts an application with the agent and looks at all of it: fetches the object tree, finds each
 * visible object by its real name, reads every property of every object and every class with its
 * members, takes bounds and pictures, and ends the application, which must answer throughout and end
 * by itself.
 */
SweepResult sweep(const SweepTarget& target);

} // namespace Torvix::Testing
