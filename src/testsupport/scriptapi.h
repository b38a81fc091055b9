#pragma once

#include "testsupport/export.h"

namespace Torvix {

/**
 * Adds the functions of the tool that scripts call by a global name and that no language installs by
 * itself to every interpreter that is made from now on: `snooze`, `isNull`, `typeName`, `findFile`,
 * `saveDesktopScreenshot`, `saveObjectSnapshot`, `highlightObject`, `findImage`, `waitForImage`,
 * `getOcrText`, `findOcrText`, `waitForOcrText`, and the object `testSettings`. Calling it again has
 * no effect. docs/script-functions.md tells what each does.
 */
TORVIXTEST_EXPORT void registerScriptApi();

} // namespace Torvix
