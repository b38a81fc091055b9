#pragma once

#include "report/recordedrun.h"

#include <QString>
#include <QVector>

class QIODevice;

namespace Torvix {

/** How a report is to be made; the defaults suit a file that is kept. */
struct ReporterOptions
{
    /** JUnit: only what the common Jenkins schema knows. */
    bool strictJUnit = false;
    /** File names in texts are made relative to this folder when they lie below it. */
    QString baseFolder;
    /** Where the report lies: links to attachments are relative to it. Empty: as they are. */
    QString reportFolder;
    /** Terminal: with colours. */
    bool colour = false;
};

/**
 * One way to show a whole run. It is written piece by piece while the events are read, so that what a run
 * reported need not fit into memory; texts for which the format's readers have no room are cut, and a line
 * says so. All texts are UTF-8. A write that fails is told by the device.
 */
struct Reporter
{
    const char* name;     ///< as on the command line: "junit"
    const char* fileName; ///< name of the file it makes by default: "junit.xml"
    const char* summary;  ///< one line for --help
    void (*write)(const RecordedRun& run, const ReporterOptions& options, QIODevice* out);
};

/** All reporters, in the order in which help lists them. */
const QVector<Reporter>& reporters();

/** Null when there is none of that name. */
const Reporter* reporterByName(const QString& name);

/** JUnit XML: a test suite for each suite, a flaky case with its failed attempts. */
void writeJUnit(const RecordedRun& run, const ReporterOptions& options, QIODevice* out);
/** The report as one JSON document; its form stands in docs/result-stream.md. */
void writeJson(const RecordedRun& run, const ReporterOptions& options, QIODevice* out);
/** Test Anything Protocol, version 14, with YAML diagnostics. */
void writeTap(const RecordedRun& run, const ReporterOptions& options, QIODevice* out);
/** Workflow commands that GitHub shows as annotations beside the changed lines. */
void writeGitHub(const RecordedRun& run, const ReporterOptions& options, QIODevice* out);
/** What the terminal ends with: the failures again with their differences, then the counts. */
void writeSummary(const RecordedRun& run, const ReporterOptions& options, QIODevice* out);
/** The same as Markdown: what GitHub shows at a job. */
void writeMarkdown(const RecordedRun& run, const ReporterOptions& options, QIODevice* out);
/** One HTML page that needs no network. */
void writeHtml(const RecordedRun& run, const ReporterOptions& options, QIODevice* out);

} // namespace Torvix
