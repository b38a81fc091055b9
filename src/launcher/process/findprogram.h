#pragma once

#include <QString>
#include <QStringList>

namespace Torvix {

/**
 * The absolute path of a program.
 *
 * A name with a slash is a path from the current folder, and given back without a look whether there is
 * such a file. Any other is looked for in `folders`, then in the folders of PATH.
 *
 * @return an empty string when a name without a slash is in none of them
 */
QString findProgram(const QString& name, const QStringList& folders = {});

} // namespace Torvix
