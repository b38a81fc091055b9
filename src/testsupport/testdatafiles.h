#pragma once

#include "testsupport/export.h"

#include <QString>
#include <QVariant>

namespace Torvix {

class ScriptContext;

/**
 * Copies a test data file of the test (see findTestSuiteFile) into the current folder of the current
 * application, under its own file name, over a file that is there. The path of the copy on the
 * application's side; an invalid QVariant with `error` filled on failure.
 */
TORVIXTEST_EXPORT QVariant copyTestData(const QString& path, QString* error);

/**
 * `testData.get(file)`: copies a file of the application, relative to its current folder, into the
 * current folder, which is the test case's, under its own file name. The result is the copy's path.
 */
TORVIXTEST_EXPORT void testDataGet(ScriptContext* context);

} // namespace Torvix
