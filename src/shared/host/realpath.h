#pragma once

#include <QString>

namespace Torvix {

/**
 * The canonical form of an absolute path, free of symbolic links, "." and "..".
 *
 * A relative path is returned as it stands, also when the file exists: it is not resolved against
 * anything, and that is intended. A path that cannot be resolved, such as that of a missing file,
 * is returned as it came.
 */
QString realPath(const QString& path);

} // namespace Torvix
