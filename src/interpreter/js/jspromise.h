#pragma once

#include "engine/value.h"

namespace KJS {
class ExecState;
}

namespace Torvix {

/**
 * For what a function that the runner called has answered: when it is a promise (of an async function),
 * its rejection becomes the exception of the state, as if the function had thrown. One that nothing will
 * ever settle is an error as well. Call it outside of any script: promise jobs run when the outermost one
 * has ended.
 */
void awaitPromise(KJS::ExecState* exec, const KJS::Value& answer);

} // namespace Torvix
