#include "testsupport/screen/screenshots.h"

#include "objectmodel/inspector.h"
#include "testsupport/externaltool.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QSaveFile>

namespace Torvix {

namespace {

constexpr int grabTimeoutMs = 10'000;

QImage fromPng(const QByteArray& png, QString* error)
{
    QImage image = QImage::fromData(png, "PNG");
    const double ratio = image.text(QString::fromLatin1(Protocol::pixelRatioKey)).toDouble();
    if (ratio > 0)
        image.setDevicePixelRatio(ratio);
    if (image.isNull())
        *error = QStringLiteral("The screenshot cannot be read");
    return image;
}

QImage grabDisplay(const QString& display, QString* error)
{
    const ToolResult grabbed = runTool(
        {QStringLiteral("ffmpeg"), QStringLiteral("ffmpeg"), QStringLiteral("A screenshot of the display")},
        {QStringLiteral("-loglevel"), QStringLiteral("error"), QStringLiteral("-f"),
         QStringLiteral("x11grab"), QStringLiteral("-i"), display, QStringLiteral("-frames:v"),
         QStringLiteral("1"), QStringLiteral("-f"), QStringLiteral("image2pipe"), QStringLiteral("-c:v"),
         QStringLiteral("png"), QStringLiteral("-")},
        grabTimeoutMs);
    *error = grabbed.error;
    return grabbed.error.isEmpty() ? fromPng(grabbed.output, error) : QImage();
}

} // namespace

QImage grabDesktop(QString* error)
{
    Inspector* inspector = Inspector::self();
    Result<QByteArray> png =
        Failure{QStringLiteral("There is nothing to take a screenshot of: no application runs, and there is "
                               "no X display (DISPLAY is not set)")};
    if (inspector->current())
        png = inspector->grabScreenshot(nullptr, Protocol::ScreenshotArea::Screen);
    if (png)
        return fromPng(*png, error);
    const QString display = QString::fromLocal8Bit(qgetenv("DISPLAY"));
    if (!display.isEmpty())
        return grabDisplay(display, error);
    *error = png.error();
    return {};
}

QImage grabObject(const SharedPtr<Object>& object, QString* error)
{
    const Result<QByteArray> png = Inspector::self()->grabScreenshot(object);
    *error = png.error();
    return png ? fromPng(*png, error) : QImage();
}

bool savePng(const QImage& image, const QString& path, QString* error)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QSaveFile file(path);
    QDir().mkpath(QFileInfo(path).absolutePath());
    if (image.save(&buffer, "PNG") && file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() &&
        file.commit())
        return true;
    *error = QStringLiteral("Cannot write file '%1': %2").arg(path, file.errorString());
    return false;
}

QImage loadImage(const QString& path, QString* error)
{
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    const QImage image = reader.read();
    if (image.isNull())
        *error = QStringLiteral("Cannot read image '%1': %2")
                     .arg(QDir::current().absoluteFilePath(path), reader.errorString());
    return image;
}

} // namespace Torvix
