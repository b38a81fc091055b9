#include "testsupport/externaltool.h"

#include <QProcess>
#include <QStandardPaths>

namespace Torvix {

QString findTool(const ExternalTool& tool, QString* error)
{
    const QString path = QStandardPaths::findExecutable(tool.program);
    if (path.isEmpty())
        *error = QStringLiteral("%1 needs the program '%2', which is not installed here; on Debian: "
                                "apt-get install %3")
                     .arg(tool.purpose, tool.program, tool.package);
    return path;
}

ToolResult runTool(const ExternalTool& tool, const QStringList& arguments, int timeoutMs)
{
    ToolResult result;
    const QString path = findTool(tool, &result.error);
    if (path.isEmpty())
        return result;
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(path, arguments);
    if (!process.waitForFinished(timeoutMs)) {
        process.kill();
        process.waitForFinished(1000);
        result.error = QStringLiteral("%1 failed: '%2' did not end within %3 ms")
                           .arg(tool.purpose, tool.program)
                           .arg(timeoutMs);
        return result;
    }
    result.output = process.readAllStandardOutput();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        result.error =
            QStringLiteral("%1 failed: %2")
                .arg(tool.purpose, QString::fromLocal8Bit(process.readAllStandardError()).trimmed());
    return result;
}

} // namespace Torvix
