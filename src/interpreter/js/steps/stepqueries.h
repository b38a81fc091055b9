#pragma once

#include "gherkin/scriptlocation.h"
#include "gherkin/step.h"

#include <QStringList>

#include <vector>

namespace KJS {
class ExecState;
}

namespace Torvix {

/** Where the functions are that match a step, without running one. Empty, with a warning in the log, when
 *  the script cannot tell. */
std::vector<Gherkin::ScriptLocation> findMatchingSteps(KJS::ExecState* exec, const Gherkin::Step& step);

/** The patterns of the steps of a type, those of any type among them; empty with a warning likewise. */
QStringList findStepPatterns(KJS::ExecState* exec, Gherkin::StepType type);

} // namespace Torvix
