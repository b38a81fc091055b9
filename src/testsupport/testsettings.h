#pragma once

#include "interpreter/base/nativescripttype.h"

namespace Torvix {

/**
 * `testSettings`: what scripts set for the rest of the test case.
 * `waitForObjectTimeout` in ms; `throwOnFailure`: a failed check ends the test case;
 * `logScreenshotOnFail`: a failed check is kept with a screenshot of the desktop.
 */
NativeScriptNamespace testSettingsNamespace();

} // namespace Torvix
