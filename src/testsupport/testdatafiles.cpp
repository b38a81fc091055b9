#include "testsupport/testdatafiles.h"

#include "interpreter/base/scriptcontext.h"
#include "objectmodel/inspector.h"
#include "testsupport/reporting.h"
#include "testsupport/scriptfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace Torvix {

namespace {

constexpr qint64 pieceBytes = 1 << 20;

/** Sends the file piece by piece; the application's path, or invalid with the inspector's error. */
QVariant sendFile(QFile& file)
{
    Inspector* inspector = Inspector::self();
    const QString name = QFileInfo(file).fileName();
    for (;;) {
        const qint64 offset = file.pos();
        const QByteArray bytes = file.read(pieceBytes);
        const bool isLast = file.atEnd();
        const QVariant path = inspector->remoteCall(
            QStringLiteral("testDataWrite"), {name, offset, QString::fromLatin1(bytes.toBase64()), isLast});
        if (!inspector->lastError().isEmpty())
            return QVariant();
        if (isLast)
            return path;
    }
}

/** False with the error filled. */
bool fetchFile(const QString& name, QSaveFile* target, QString* error)
{
    Inspector* inspector = Inspector::self();
    for (qint64 offset = 0;;) {
        const QVariant piece = inspector->remoteCall(QStringLiteral("testDataRead"), {name, offset});
        if (!inspector->lastError().isEmpty()) {
            *error = inspector->lastError();
            return false;
        }
        const QByteArray bytes = QByteArray::fromBase64(piece.toString().toLatin1());
        if (bytes.isEmpty())
            break;
        // A target that cannot be written is told when there is something to write.
        if (!target->isOpen() && !target->open(QIODevice::WriteOnly))
            break;
        target->write(bytes);
        offset += bytes.size();
    }
    if ((target->isOpen() || target->open(QIODevice::WriteOnly)) && target->commit())
        return true;
    *error = QStringLiteral("Cannot write file '%1': %2").arg(target->fileName(), target->errorString());
    return false;
}

} // namespace

QVariant copyTestData(const QString& path, QString* error)
{
    QString places;
    const QString found = findTestSuiteFile(path, QStringLiteral("testdata"), &places);
    if (found.isEmpty()) {
        *error = QStringLiteral("There is no file '%1' in %2").arg(path, places);
        return QVariant();
    }
    QFile file(found);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("Cannot read file '%1': %2").arg(found, file.errorString());
        return QVariant();
    }
    const QVariant target = sendFile(file);
    if (!target.isValid())
        *error = Inspector::self()->lastError();
    return target;
}

void testDataGet(ScriptContext* context)
{
    if (!requireArguments(context, 1, 1, "testData.get(file)"))
        return;
    const QString name = context->argument(0)->toString();
    QSaveFile target(QDir::current().absoluteFilePath(QFileInfo(name).fileName()));
    QString error;
    if (fetchFile(name, &target, &error))
        context->setResult(context->toArgument(target.fileName()));
    else
        context->setError(error);
}

} // namespace Torvix
