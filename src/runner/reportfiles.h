#pragma once

#include "runner/commandline.h"
#include "testsupport/report/reporters.h"

namespace Torvix {

/** The name of the result stream in an output folder. */
QString streamFileName();

/** An empty report when there is no such file. */
RunReport readStreamFile(const QString& path);

/** Writes one report; false with one line of why not. */
bool writeReport(const RunReport& report, const Reporter& reporter, const ReporterOptions& options,
                 const QString& path, QString* error);

/** The HTML page into the output folder, whose path it tells, and what the options ask for. */
bool writeReports(const RunReport& report, const RunOptions& options, QString* page, QString* error);

} // namespace Torvix
