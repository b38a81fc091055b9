#include "shared/host/realpath.h"

#include <QDir>

#include <climits>
#include <cstdlib>

namespace Torvix {

QString realPath(const QString& path)
{
    if (QDir::isRelativePath(path))
        return path;
    char resolved[PATH_MAX];
    const QByteArray native = QDir::toNativeSeparators(path).toLocal8Bit();
    return realpath(native.constData(), resolved) ? QString::fromLocal8Bit(resolved) : path;
}

} // namespace Torvix
