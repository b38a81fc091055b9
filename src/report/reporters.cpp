#include "report/reporters.h"

#include <algorithm>

namespace Torvix {

const QVector<Reporter>& reporters()
{
    static const QVector<Reporter> table = {
        {"html", "index.html", "one self-contained page for people", writeHtml},
        {"junit", "junit.xml", "JUnit XML for build servers", writeJUnit},
        {"json", "report.json", "the whole report as one JSON document", writeJson},
        {"tap", "report.tap", "Test Anything Protocol, version 14", writeTap},
        {"github", "annotations.txt", "GitHub annotations for failures and warnings", writeGitHub},
        {"markdown", "summary.md", "failures and counts as GitHub shows them at a job", writeMarkdown},
        {"summary", "summary.txt", "failures and counts as plain text", writeSummary},
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

} // namespace Torvix
