#pragma once

#include <QString>

namespace Torvix {
namespace TestData {

/**
 * Makes the directories of a path that are missing, as far as the system allows; says nothing if it
 * does not. With `lastIsFile` the last component names a file and is left out, together with every
 * other component of the same name: of "a/b/a", only "b" is made, which is intended.
 */
void checkAndMakeDir(const QString& path, bool lastIsFile);

} // namespace TestData
} // namespace Torvix
