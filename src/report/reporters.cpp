#include "report/reporters.h"

#include <QDir>

#include <algorithm>

namespace Torvix {

const QVector<Reporter>& reporters()
{
    static const QVector<Reporter> table = {
        {"html", "index.html", "one self-contained page for people", renderHtml},
        {"junit", "junit.xml", "JUnit XML for build servers", renderJUnit},
        {"json", "report.json", "the whole report as one JSON document", renderJson},
        {"tap", "report.tap", "Test Anything Protocol, version 14", renderTap},
        {"github", "annotations.txt", "GitHub annotations for failures and warnings", renderGitHub},
        {"summary", "summary.txt", "failures and counts as plain text", renderSummary},
    };
    return table;
}

const Reporter* reporterByName(const QString& name)
{
    const auto& table = reporters();
    const auto row = std::find_if(table.begin(), table.end(),
                                  [&name](const Reporter& each) { return name == QLatin1String(each.name); });
    return row == table.end() ? nullptr : &*row;
}

QString durationText(qint64 durationMs)
{
    if (durationMs < 1000)
        return QStringLiteral("%1 ms").arg(durationMs);
    if (durationMs < 60'000)
        return QStringLiteral("%1 s").arg(double(durationMs) / 1000, 0, 'f', 1);
    const qint64 seconds = (durationMs + 500) / 1000;
    return QStringLiteral("%1 min %2 s").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

QString positionText(const QString& file, int line)
{
    return line > 0 ? file + QLatin1Char(':') + QString::number(line) : file;
}

QString relativeTo(const QString& folder, const QString& file)
{
    if (folder.isEmpty() || !QDir::isAbsolutePath(file))
        return file;
    const QString relative = QDir(folder).relativeFilePath(file);
    return relative.startsWith(QLatin1String("..")) ? file : relative;
}

} // namespace Torvix
