#pragma once

#include "testsupport/export.h"

#include <QString>

namespace Torvix {

/** The folder of the test case that runs, absolute; without one the current folder. */
TORVIXTEST_EXPORT QString testCaseFolder();

/**
 * A file of the test, absolute: in `subdirectory`, "testdata" or "scripts", of the test case, then of
 * its suite's `shared` folder. Scripts of a test case lie in its folder itself. Null when there is
 * none; `places` (may be null) is filled with where it was looked for, for messages.
 */
TORVIXTEST_EXPORT QString findTestSuiteFile(const QString& name, const QString& subdirectory,
                                            QString* places = nullptr);

/**
 * The path of a picture: as it is from the test case's folder, or in "images" of the test case or
 * of the suite's `shared` folder. The name as it was given when there is none.
 */
TORVIXTEST_EXPORT QString findImageFile(const QString& name);

} // namespace Torvix
