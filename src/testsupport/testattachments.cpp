// What scripts put beside their results: files, pictures, videos.

#include "interpreter/base/scriptcontext.h"
#include "objectmodel/inspector.h"
#include "testsupport/attachments.h"
#include "testsupport/reporting.h"
#include "testsupport/screen/screenshots.h"
#include "testsupport/screen/videocapture.h"
#include "testsupport/scriptfiles.h"
#include "testsupport/testfunctions.h"
#include "testsupport/testresult.h"

#include <QFileInfo>

namespace Torvix {

namespace {

QString messageOr(const ScriptContext& context, int index, const QString& fallback)
{
    return resultTexts(context, index, fallback).message;
}

/** A log entry with the attachment, unless there was an error. */
void reportAttachment(ScriptContext* context, const Attachment& attachment, const QString& message,
                      const QString& error)
{
    if (!error.isEmpty()) {
        context->setError(error);
        return;
    }
    QVector<Attachment> attachments;
    if (!attachment.path.isEmpty())
        attachments.append(attachment);
    report(context, ResultType::Log, message, QString(), attachments);
}

void reportImage(ScriptContext* context, const QImage& image, const QString& name, const QString& message,
                 QString error)
{
    Attachment attachment;
    if (error.isEmpty())
        attachment = attachImage(resultSink(*context), image, name, message, &error);
    reportAttachment(context, attachment, message, error);
}

} // namespace

void testAttachFile(ScriptContext* context)
{
    if (!requireArguments(context, 1, 2, "test.attachFile(file[, message])"))
        return;
    const QString path = context->argument(0)->toString();
    const QString message =
        messageOr(*context, 1, QStringLiteral("Attached file '%1'").arg(QFileInfo(path).fileName()));
    QString error;
    const Attachment attachment = attachFile(resultSink(*context), path, message, &error);
    reportAttachment(context, attachment, message, error);
}

void testAttachDesktopScreenshot(ScriptContext* context)
{
    if (!requireArguments(context, 0, 1, "test.attachDesktopScreenshot([message])"))
        return;
    QString error;
    const QImage image = grabDesktop(&error);
    reportImage(context, image, QStringLiteral("desktop.png"),
                messageOr(*context, 0, QStringLiteral("Screenshot of the desktop")), error);
}

void testAttachImage(ScriptContext* context)
{
    if (!requireArguments(context, 1, 2, "test.attachImage(file or object[, message])"))
        return;
    const SharedPtr<ScriptArgument> what = context->argument(0);
    QString error;
    if (const SharedPtr<Object> object = what->toObject()) {
        const QImage image = grabObject(object, &error);
        reportImage(context, image, QStringLiteral("object.png"),
                    messageOr(*context, 1, QStringLiteral("Screenshot of an object")), error);
        return;
    }
    const QString path = findImageFile(what->toString());
    const QImage image = loadImage(path, &error);
    reportImage(context, image, QFileInfo(path).completeBaseName() + QLatin1String(".png"),
                messageOr(*context, 1, QStringLiteral("Image '%1'").arg(what->toString())), error);
}

void testStartVideoCapture(ScriptContext* context)
{
    if (!requireArguments(context, 0, 1, "test.startVideoCapture([message])"))
        return;
    TestResult* result = resultSink(*context);
    const QString file = result ? result->newOutputFile(QStringLiteral("video.mp4")) : QString();
    if (file.isEmpty()) {
        context->setError(QStringLiteral("Video capture needs a folder for results, and there is none here"));
        return;
    }
    if (result->videoCapture()) {
        context->setError(QStringLiteral("A video is being captured already"));
        return;
    }
    auto capture = std::make_unique<VideoCapture>();
    QString error;
    if (!capture->start(file, &error)) {
        context->setError(error);
        return;
    }
    result->setVideoCapture(std::move(capture));
    report(context, ResultType::Log, messageOr(*context, 0, QStringLiteral("Video capture started")),
           QString());
}

void testStopVideoCapture(ScriptContext* context)
{
    if (!requireArguments(context, 0, 0, "test.stopVideoCapture()"))
        return;
    TestResult* result = resultSink(*context);
    const std::unique_ptr<VideoCapture> capture = result ? result->takeVideoCapture() : nullptr;
    if (!capture) {
        context->setError(QStringLiteral("test.stopVideoCapture() without test.startVideoCapture()"));
        return;
    }
    QString error;
    capture->stop(&error);
    const QString message = QStringLiteral("Video capture stopped");
    reportAttachment(context, error.isEmpty() ? attachmentOf(capture->file(), message) : Attachment(),
                     message, error);
}

} // namespace Torvix
