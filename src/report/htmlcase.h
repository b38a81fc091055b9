#pragma once

#include "report/reporters.h"

namespace Torvix {

/** How much of long things the page shows; what is left out is told at its place. */
struct HtmlLimits
{
    int output = 20'000;     ///< characters of an application's output or an object tree: the last ones
    int fineOutput = 20'000; ///< the same of attempts that did not fail
    int text = 20'000;       ///< characters of a message or a detail: the first ones
    int steps = 100'000;     ///< entries of an attempt; failures are always shown
};

/** Text for an element or a quoted attribute; control characters become visible ones. */
QString htmlText(const QString& text);

/** What stands under the head of a test case: its attempts with steps, applications and object tree. */
QString htmlCaseBody(const CaseReport& testCase, const ReporterOptions& options, const HtmlLimits& limits);

} // namespace Torvix
