#include "launcher/process/findprogram.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace Torvix {

QString findProgram(const QString& name, const QStringList& folders)
{
    if (name.contains(QLatin1Char('/')))
        return QDir::cleanPath(QDir::current().absoluteFilePath(name));
    for (const QString& folder : folders) {
        const QFileInfo candidate(QDir(folder), name);
        if (candidate.isFile() && candidate.isExecutable())
            return candidate.absoluteFilePath();
    }
    return QStandardPaths::findExecutable(name);
}

} // namespace Torvix
