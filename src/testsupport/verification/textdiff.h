#pragma once

#include "testsupport/export.h"

#include <QString>
#include <QStringList>

namespace Torvix {

/**
 * What differs between two texts, line by line: lines with "- " are expected only, with "+ " seen
 * only, with two spaces in both; "@@ line N @@" (of the expected text) stands where lines that are
 * alike are left out. Empty when the texts are the same.
 */
TORVIXTEST_EXPORT QString textDifference(const QString& expected, const QString& actual, int linesAround = 2);
TORVIXTEST_EXPORT QString textDifference(const QStringList& expected, const QStringList& actual,
                                         int linesAround = 2);

} // namespace Torvix
