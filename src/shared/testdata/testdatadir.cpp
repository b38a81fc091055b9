#include "shared/testdata/testdatadir.h"

#include <QDir>
#include <QStringList>

namespace Torvix {
namespace TestData {

void checkAndMakeDir(const QString& path, bool lastIsFile)
{
    const QLatin1Char slash('/');
    QStringList components = path.split(slash, Qt::SkipEmptyParts);
    if (components.isEmpty() || (lastIsFile && !path.contains(slash)))
        return;
    if (lastIsFile)
        components.removeAll(QString(components.last()));

    QString current = path.startsWith(slash) ? QString(slash) : QString();
    for (const QString& component : std::as_const(components)) {
        QDir directory(current);
        if (!directory.exists(component))
            directory.mkdir(component);
        current += component + slash;
    }
}

} // namespace TestData
} // namespace Torvix
