#pragma once

#include "support/runreport.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

namespace Torvix {

/**
 * The program itself on suites or test cases of the test's source folder. What it leaves is in a folder
 * that goes with this, whose path scripts and applications have as TORVIX_TEST_FOLDER.
 */
class SuiteRun
{
public:
    explicit SuiteRun(const QStringList& suites)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("PATH", TORVIX_TEST_BINARY_DIR "/tests:" + environment.value("PATH"));
        environment.insert("TORVIX_TEST_FOLDER", folder.path());
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(TORVIX_TEST_SOURCE_DIR);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(TORVIX_RUNNER, QStringList{"run", "--output", folder.filePath("results")} + suites);
    }

    /** The exit code, when it has ended. */
    int finish()
    {
        EXPECT_TRUE(process.waitForFinished(100'000));
        m_output = QString::fromUtf8(process.readAll());
        return process.exitCode();
    }

    /** What was printed, once it has finished. */
    std::string output() const { return m_output.toStdString(); }

    QString streamText() const
    {
        QFile stream(folder.filePath("results/results.ndjson"));
        return stream.open(QIODevice::ReadOnly) ? QString::fromUtf8(stream.readAll()) : QString();
    }

    /** Waits until the result stream has that text. */
    bool reaches(const QString& text) const
    {
        QElapsedTimer timer;
        for (timer.start(); timer.elapsed() < 30'000; QThread::msleep(20))
            if (streamText().contains(text))
                return true;
        return false;
    }

    RunReport report() const
    {
        const QString stream = folder.filePath("results/results.ndjson");
        EXPECT_TRUE(QFile::exists(stream)) << output();
        return readReportFile(stream);
    }

    QTemporaryDir folder;
    QProcess process;

private:
    QString m_output;
};

} // namespace Torvix
