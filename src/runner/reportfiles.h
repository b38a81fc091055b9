#pragma once

#include "report/reporters.h"
#include "runner/commandline.h"

namespace Torvix {

/** "results.ndjson". */
QString streamFileName();

/** The report of a stream on disk, its attachments with absolute paths; an empty one when there is none. */
RunReport readStreamFile(const QString& path);

/** Takes away the attachments of an earlier run in the folder, which its stream names; the new run would
 *  otherwise lie among them for ever. */
void removeAttachmentsOf(const RunReport& earlier, const QString& folder);

/**
 * Makes one report; "-" is the standard output. Links to attachments become relative to it.
 * False with one line of what went wrong.
 */
bool writeReport(RunReport report, const Reporter& reporter, const ReporterOptions& options,
                 const QString& path, QString* error);

/**
 * The HTML page and what else the options ask for, into the output folder. The page's path is filled
 * when it was made. What cannot be made does not keep the others from being made; the lines of what went
 * wrong are the answer.
 */
QStringList writeReports(const RunReport& report, const RunOptions& options, QString* page);

} // namespace Torvix
