#pragma once

#include "report/reporters.h"
#include "runner/commandline.h"

namespace Torvix {

/**
 * The standard output as the place of a report: as long as this lives, everything else that the process
 * prints goes to the error stream. For a run that makes no report there it changes nothing.
 */
class ReportOutput
{
public:
    explicit ReportOutput(const QVector<ReporterRequest>& requests);
    ~ReportOutput();
    ReportOutput(const ReportOutput&) = delete;
    ReportOutput& operator=(const ReportOutput&) = delete;

    /** Of the standard output as it was. */
    int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

/** Makes the folders of the reports that are asked for. False with one line about the first that cannot be
 *  written. */
bool prepareReports(const RunOptions& options, QString* error);

/**
 * Makes one report; "-" is the standard output. Links to attachments are relative to it.
 * False with one line of what went wrong; `isFull` then says whether room was missing.
 */
bool writeReport(const RecordedRun& run, const Reporter& reporter, ReporterOptions options,
                 const QString& path, const ReportOutput& output, QString* error, bool* isFull);

/**
 * The HTML page and what else the options ask for. The page's path is filled when it was made; without
 * `withFolder` only what lies outside of the output folder is. What cannot be made does not keep the others
 * from being made; the lines of what went wrong are the answer.
 */
QStringList writeReports(const RecordedRun& run, const RunOptions& options, const ReportOutput& output,
                         bool withFolder, QString* page);

} // namespace Torvix
