#pragma once

#include "report/htmlpictures.h"
#include "report/reporters.h"

namespace Torvix {

/** How much of long things the page shows; what is left out is told at its place. */
struct HtmlLimits
{
    int output = 20'000;     ///< characters of an application's output or an object tree: the last ones
    int fineOutput = 20'000; ///< the same of attempts that did not fail
    int text = 20'000;       ///< characters of a message or a detail: the first ones
    int steps = 100'000;     ///< entries of an attempt
    int failures = 1000;     ///< failures of an attempt, which are shown beyond the steps
};

/** Text for an element or a quoted attribute; control characters become visible ones. */
QString htmlText(const QString& text);

/** The lines of a difference, marked, and within a line that was changed what was. */
QString htmlDifference(const QString& difference);

/** What stands under the head of a test case: its attempts with steps, applications and object tree.
 *  Pictures are marked as HtmlPictures does it. */
QString htmlCaseBody(const RecordedRun& run, const CaseSummary& testCase, const ReporterOptions& options,
                     const HtmlLimits& limits, HtmlPictures* pictures);

} // namespace Torvix
