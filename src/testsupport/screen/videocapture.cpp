#include "testsupport/screen/videocapture.h"

#include "launcher/process/processend.h"
#include "testsupport/externaltool.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>

namespace Torvix {

namespace {

constexpr int startTimeoutMs = 10'000;
constexpr int stopTimeoutMs = 20'000;
/** A Ctrl-C in the terminal reaches the program too, which then ends the file as well. */
constexpr int endedBySignal = 255;

QString lastLines(QProcess* process)
{
    const QStringList lines =
        QString::fromLocal8Bit(process->readAllStandardError()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    return lines.mid(qMax(0, lines.size() - 3)).join(QLatin1Char('\n'));
}

} // namespace

VideoCapture::VideoCapture() = default;

VideoCapture::~VideoCapture()
{
    QString ignored;
    if (m_process)
        stop(&ignored);
}

bool VideoCapture::start(const QString& file, QString* error)
{
    const QString ffmpeg = findTool(
        {QStringLiteral("ffmpeg"), QStringLiteral("ffmpeg"), QStringLiteral("Video capture")}, error);
    if (ffmpeg.isEmpty())
        return false;
    const QString display = QString::fromLocal8Bit(qgetenv("DISPLAY"));
    if (display.isEmpty()) {
        *error = QStringLiteral("Video capture needs an X display (DISPLAY is not set)");
        return false;
    }
    m_file = file;
    m_process = std::make_unique<QProcess>();
    m_process->setStandardOutputFile(QProcess::nullDevice());
    // Even sizes, and colours that every player knows.
    m_process->start(ffmpeg,
                     {QStringLiteral("-nostats"), QStringLiteral("-progress"), QStringLiteral("pipe:2"),
                      QStringLiteral("-f"), QStringLiteral("x11grab"), QStringLiteral("-framerate"),
                      QStringLiteral("10"), QStringLiteral("-i"), display, QStringLiteral("-vf"),
                      QStringLiteral("crop=trunc(iw/2)*2:trunc(ih/2)*2"), QStringLiteral("-pix_fmt"),
                      QStringLiteral("yuv420p"), QStringLiteral("-y"), file});
    if (waitForFirstPicture())
        return true;
    *error = QStringLiteral("Video capture did not begin: %1").arg(lastLines(m_process.get()));
    m_process->kill();
    m_process->waitForFinished(1000);
    m_process.reset();
    return false;
}

bool VideoCapture::waitForFirstPicture()
{
    QElapsedTimer timer;
    timer.start();
    QByteArray told;
    m_process->setReadChannel(QProcess::StandardError);
    while (timer.elapsed() < startTimeoutMs && m_process->state() != QProcess::NotRunning) {
        told += m_process->peek(m_process->bytesAvailable());
        if (told.contains("progress=continue"))
            return true;
        m_process->waitForReadyRead(100);
    }
    return false;
}

bool VideoCapture::stop(QString* error)
{
    const std::unique_ptr<QProcess> process = std::move(m_process);
    // It writes the end of the file when it is asked to quit.
    process->write("q");
    process->closeWriteChannel();
    if (!process->waitForFinished(stopTimeoutMs)) {
        process->kill();
        process->waitForFinished(1000);
    }
    const ProcessEnd end = endOf(*process);
    const bool isDone = end.isOrderly() || (end.kind == ProcessEnd::Exited && end.code == endedBySignal);
    if (isDone && QFileInfo(m_file).size() > 0)
        return true;
    const QString told = lastLines(process.get());
    *error = QStringLiteral("Video capture failed: %1")
                 .arg(told.isEmpty() ? QStringLiteral("ffmpeg ") + endText(end) : told);
    return false;
}

} // namespace Torvix
