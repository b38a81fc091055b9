#pragma once

#include "engine/object.h"

namespace Torvix {

/** Writes its first argument and a newline to the standard output, in UTF-8. */
KJS::Value jsPrint(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
/** Runs the script of a file in the global scope. */
KJS::Value jsSource(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
/** Polls an expression or a function until it is true, or the time in milliseconds is over. */
KJS::Value jsWaitFor(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);

} // namespace Torvix
