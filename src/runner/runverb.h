#pragma once

#include "runner/commandline.h"

namespace Torvix {

// The verbs of the command line. Each prints what it has to say and answers an ExitCode; an error is
// one line on the standard error.
int runVerb(const RunOptions& options);
int listVerb(const RunOptions& options);
int reportVerb(const ReportOptions& options);
int inspectVerb(const InspectOptions& options);
int initVerb(const InitOptions& options);
int doctorVerb(const DoctorOptions& options);

/** "torvixrunner: " and the text, on the standard error; answers the code. */
int fail(ExitCode code, const QString& text);

} // namespace Torvix
