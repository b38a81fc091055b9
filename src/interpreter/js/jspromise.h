#pragma once

#include "engine/value.h"

namespace KJS {
class ExecState;
}

namespace Torvix {

/**
 * Takes what a function that the runner called has returned. When that is a promise (the function is async),
 * its rejection becomes the exception of the state, as if the function had thrown; so does a promise that is
 * not settled, since nothing will settle it any more. Call it outside of any script: promise jobs run when
 * the outermost script has ended.
 */
void awaitPromise(KJS::ExecState* exec, const KJS::Value& answer);

} // namespace Torvix
