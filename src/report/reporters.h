#pragma once

#include "report/runreport.h"

#include <QByteArray>
#include <QStringList>

namespace Torvix {

/** How a report is to be made; the defaults suit a file that is kept. */
struct ReporterOptions
{
    /** JUnit: only what the common Jenkins schema knows. */
    bool strictJUnit = false;
    /** File names in annotations are made relative to this folder when they lie below it. */
    QString baseFolder;
    /** Terminal: with colours. */
    bool colour = false;
};

/** One way to show a whole run. All texts are UTF-8. */
struct Reporter
{
    const char* name;     ///< as on the command line: "junit"
    const char* fileName; ///< name of the file it makes by default: "junit.xml"
    const char* summary;  ///< one line for --help
    QByteArray (*render)(const RunReport& report, const ReporterOptions& options);
};

/** All reporters, in the order in which help lists them. */
const QVector<Reporter>& reporters();

/** Null when there is none of that name. */
const Reporter* reporterByName(const QString& name);

/** JUnit XML: a test suite for each suite, a flaky case with its failed attempts. */
QByteArray renderJUnit(const RunReport& report, const ReporterOptions& options);
/** The report as one JSON document; its form stands in docs/result-stream.md. */
QByteArray renderJson(const RunReport& report, const ReporterOptions& options);
/** Test Anything Protocol, version 14, with YAML diagnostics. */
QByteArray renderTap(const RunReport& report, const ReporterOptions& options);
/** Workflow commands that GitHub shows as annotations beside the changed lines. */
QByteArray renderGitHub(const RunReport& report, const ReporterOptions& options);
/** What the terminal ends with: the failures again with their differences, then the counts. */
QByteArray renderSummary(const RunReport& report, const ReporterOptions& options);
/** One HTML page that needs no network and no other file but the screenshots beside it. */
QByteArray renderHtml(const RunReport& report, const ReporterOptions& options);

/** "1.2 s", "850 ms", "2 min 03 s". */
QString durationText(qint64 durationMs);

/** "file:line", or the file alone when the line is not known (0). */
QString positionText(const QString& file, int line);

/** file below folder as a relative path, anything else as it is. */
QString relativeTo(const QString& folder, const QString& file);

} // namespace Torvix
