#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QVector>

namespace Torvix {

/** How the agent gets into a program, and why it does not get into some. */
namespace Injection {

/** The folder with `generic/libtorvixagent.so`: the given one, else that beside this library. */
QString pluginDirectory(const QString& given);

/** Adds the agent to the plug-ins that Qt loads; what is there stays. */
void extendEnvironment(QProcessEnvironment* environment, const QString& pluginDirectory);

/**
 * Why a program file can never take the agent, as far as the file tells: not there, not
 * executable, made for Qt 6, with Qt linked statically. Empty when it may.
 */
QString fileProblem(const QString& program);

/** True when the process has Qt 5's user interface loaded. */
bool mayStillCall(int pid);

/** Why processes that run have not called: looks at the libraries that they have loaded. */
QString processProblem(const QVector<int>& pids);

} // namespace Injection

} // namespace Torvix
