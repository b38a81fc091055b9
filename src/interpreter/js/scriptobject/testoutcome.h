#pragma once

#include "engine/object.h"

namespace Torvix {

/** Property of an error object by which a test outcome is told from a script error, and its values. */
extern const char* const torvixErrorType;
extern const char* const torvixVerificationFailure;
extern const char* const torvixTestcaseSkipped;

/** Whether an exception stands for a failed check or a skipped test case, which has been reported already.
 *  The exception of the state stays what it is. */
bool isTestOutcome(KJS::ExecState* exec, const KJS::Object& exception);

} // namespace Torvix
