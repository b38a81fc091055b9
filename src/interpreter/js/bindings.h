#pragma once

#include "interpreter/js/scriptobject/scriptobject.h"

/** The script API's part of the global scope. `test` comes later, with the result sink. */
namespace Torvix {

/** In the order in which scripts see them; first the functions, then the objects. */
extern const JsFunctionRow globalFunctions[];
extern const JsGlobalRow globalObjects[];

} // namespace Torvix
