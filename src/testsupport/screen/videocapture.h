#pragma once

#include "testsupport/export.h"

#include <QString>

#include <memory>

class QProcess;

namespace Torvix {

/**
 * Records the X display into a video file with the program `ffmpeg`, until it is stopped or deleted.
 */
class TORVIXTEST_EXPORT VideoCapture
{
public:
    VideoCapture();
    ~VideoCapture();
    VideoCapture(const VideoCapture&) = delete;
    VideoCapture& operator=(const VideoCapture&) = delete;

    /** Returns when the first picture is taken. False with the reason in `*error`. */
    bool start(const QString& file, QString* error);
    /** False with the reason in `*error` when there is no video. */
    bool stop(QString* error);

    QString file() const { return m_file; }

private:
    bool waitForFirstPicture();

    std::unique_ptr<QProcess> m_process;
    QString m_file;
};

} // namespace Torvix
