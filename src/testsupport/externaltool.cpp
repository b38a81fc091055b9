#include "testsupport/externaltool.h"

#include "launcher/process/findprogram.h"
#include "launcher/process/processend.h"

#include <QProcess>

namespace Torvix {

QString findTool(const ExternalTool& tool, QString* error)
{
    const QString path = findProgram(tool.program);
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
    const ProcessEnd end = endOf(process);
    if (end.isOrderly())
        return result;
    const QString told = QString::fromLocal8Bit(process.readAllStandardError()).trimmed();
    result.error =
        QStringLiteral("%1 failed: %2")
            .arg(tool.purpose,
                 told.isEmpty() ? QStringLiteral("'%1' %2").arg(tool.program, endText(end)) : told);
    return result;
}

} // namespace Torvix
