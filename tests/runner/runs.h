#pragma once

#include "support/processes.h"
#include "support/runreport.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <csignal>

namespace Torvix {

/** Suites in a temporary folder, and the runner on them. */
class Runs : public testing::Test
{
protected:
    void write(const QString& name, const QByteArray& text)
    {
        QDir(m_folder.path()).mkpath(QFileInfo(name).path());
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    QString path(const QString& name) const { return QDir(m_folder.path()).canonicalPath() + '/' + name; }

    void start(QProcess* process, const QStringList& arguments)
    {
        process->setWorkingDirectory(m_folder.path());
        process->setProcessChannelMode(QProcess::MergedChannels);
        process->start(TORVIX_RUNNER, arguments);
        ASSERT_TRUE(process->waitForStarted());
    }

    /** The exit code; what was printed is in m_output. */
    int run(const QStringList& arguments)
    {
        QProcess process;
        start(&process, arguments);
        EXPECT_TRUE(process.waitForFinished(60'000));
        m_output = QString::fromUtf8(process.readAll());
        return process.exitCode();
    }

    RunReport report(const QString& folder = QStringLiteral("results"))
    {
        EXPECT_TRUE(QFile::exists(path(folder + "/results.ndjson"))) << m_output.toStdString();
        return readReportFile(path(folder + "/results.ndjson"));
    }

    /** What the script logged as "pid N"; 0 when it does not in time. */
    pid_t loggedPid()
    {
        const QRegularExpression pattern("\"pid (\\d+)\"");
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 20'000) {
            QFile stream(path("results/results.ndjson"));
            if (stream.open(QIODevice::ReadOnly)) {
                const auto match = pattern.match(QString::fromUtf8(stream.readAll()));
                if (match.hasMatch())
                    return match.captured(1).toInt();
            }
            QThread::msleep(20);
        }
        return 0;
    }

    const ResultEntry* failure(const RunReport& report, int index = 0)
    {
        return report.cases.at(index).attempts.last().firstFailure();
    }

    QTemporaryDir m_folder;
    QString m_output;
};

} // namespace Torvix
