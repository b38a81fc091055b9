#pragma once

#include "testsupport/export.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace Torvix {

/** A program of the system that some functions need. */
struct ExternalTool
{
    QString program;
    QString package; ///< of Debian, for the message when it is absent
    QString purpose; ///< begins that message: "Text recognition"
};

struct ToolResult
{
    QByteArray output;
    QString error; ///< empty for success
};

/** The path of the program; null with a text that names what to install. */
TORVIXTEST_EXPORT QString findTool(const ExternalTool& tool, QString* error);

/** Runs it to its end. A program that is absent, fails or takes longer gives an error. */
TORVIXTEST_EXPORT ToolResult runTool(const ExternalTool& tool, const QStringList& arguments, int timeoutMs);

} // namespace Torvix
