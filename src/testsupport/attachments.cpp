#include "testsupport/attachments.h"

#include "testsupport/screen/screenshots.h"
#include "testsupport/testresult.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>

namespace Torvix {

namespace {

/** Null when there is no folder; an error when it cannot be made. */
QString newFile(TestResult* result, const QString& name, QString* error)
{
    if (!result || result->outputFolder().isEmpty())
        return {};
    const QString path = result->newOutputFile(name);
    if (path.isEmpty())
        *error = QStringLiteral("Cannot make the folder '%1'").arg(result->outputFolder());
    return path;
}

} // namespace

Attachment attachmentOf(const QString& path, const QString& description)
{
    return {path, QMimeDatabase().mimeTypeForFile(path).name(), description};
}

Attachment attachFile(TestResult* result, const QString& path, const QString& description, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("Cannot read file '%1': %2")
                     .arg(QDir::current().absoluteFilePath(path), file.errorString());
        return {};
    }
    const QString copy = newFile(result, QFileInfo(path).fileName(), error);
    if (copy.isEmpty())
        return {};
    if (file.copy(copy))
        return attachmentOf(copy, description);
    *error = QStringLiteral("Cannot write file '%1': %2").arg(copy, file.errorString());
    return {};
}

Attachment attachImage(TestResult* result, const QImage& image, const QString& name,
                       const QString& description, QString* error)
{
    const QString path = newFile(result, name, error);
    if (path.isEmpty() || !savePng(image, path, error))
        return {};
    return attachmentOf(path, description);
}

Attachment attachText(TestResult* result, const QByteArray& text, const QString& name,
                      const QString& description, QString* error)
{
    const QString path = newFile(result, name, error);
    if (path.isEmpty())
        return {};
    QFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush())
        return attachmentOf(path, description);
    *error = QStringLiteral("Cannot write file '%1': %2").arg(path, file.errorString());
    return {};
}

} // namespace Torvix
