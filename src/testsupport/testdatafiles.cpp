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

/** Sends the file piece by piece; gives the path that the application has it under. */
Result<QVariant> sendFile(QFile& file)
{
    const QString name = QFileInfo(file).fileName();
    for (;;) {
        const qint64 offset = file.pos();
        const QByteArray bytes = file.read(pieceBytes);
        const bool isLast = file.atEnd();
        const Result<QVariant> path = Inspector::self()->remoteCall(
            QStringLiteral("testDataWrite"), {name, offset, QString::fromLatin1(bytes.toBase64()), isLast});
        if (!path || isLast)
            return path;
    }
}

/** False with the error filled. */
bool fetchFile(const QString& name, QSaveFile* target, QString* error)
{
    for (qint64 offset = 0;;) {
        const Result<QVariant> piece =
            Inspector::self()->remoteCall(QStringLiteral("testDataRead"), {name, offset});
        if (!piece) {
            *error = piece.error();
            return false;
        }
        const QByteArray bytes = QByteArray::fromBase64(piece->toString().toLatin1());
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
    const Result<QVariant> target = sendFile(file);
    *error = target.error();
    return target.orNothing();
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
