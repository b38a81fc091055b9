#include "report/texts.h"
#include "support/suiterun.h"

#include <QDir>
#include <QRegularExpression>

#include <csignal>

namespace {

using namespace Torvix;

const QString sourceFolder = QStringLiteral(TORVIX_TEST_SOURCE_DIR);

/** The names of a suite's test cases, for tests that are made from each. */
std::vector<std::string> casesOf(const char* suite)
{
    std::vector<std::string> names;
    for (const QString& name : QDir(sourceFolder + '/' + suite).entryList({"tst_*"}, QDir::Dirs, QDir::Name))
        names.push_back(name.toStdString());
    return names;
}

std::string caseName(const testing::TestParamInfo<std::string>& tested)
{
    return tested.param;
}

/** Paths without the place of the source tree, and without what differs from run to run. */
QString normalized(QString text)
{
    static const QRegularExpression pid(QStringLiteral("pid \\d+"));
    return text.replace(sourceFolder + '/', QString()).replace(pid, QStringLiteral("pid N"));
}

/** What a person reads of an attempt, as it stands in the files expected.txt: all but what passed. */
QString summaryOf(const AttemptReport& attempt)
{
    QStringList lines{caseOutcomeName(attempt.outcome)};
    for (const ResultEntry& entry : attempt.entries) {
        if (entry.type == ResultType::Pass)
            continue;
        lines += QStringLiteral("%1 %2:%3 %4")
                     .arg(resultTypeName(entry.type), entry.file, QString::number(entry.line), entry.message);
        // The output of an application, which is the detail of its end, has warnings of its platform.
        if (!findings(entry).isEmpty() && !entry.message.startsWith("The application '"))
            for (const QString& line : findings(entry).split('\n'))
                lines += "    " + line;
    }
    for (const ApplicationReport& application : attempt.applications)
        lines += QStringLiteral("application %1: %2").arg(application.name, application.ending);
    return normalized(lines.join('\n')) + '\n';
}

class SampleApplications : public testing::TestWithParam<std::string>
{
};

TEST_P(SampleApplications, DoWhatTheTestCaseSays)
{
    SuiteRun run({"suite_samples/" + QString::fromStdString(GetParam())});
    EXPECT_EQ(0, run.finish()) << run.output();
}

INSTANTIATE_TEST_SUITE_P(All, SampleApplications, testing::ValuesIn(casesOf("suite_samples")), caseName);

class SampleOutcomes : public testing::TestWithParam<std::string>
{
};

TEST_P(SampleOutcomes, AreToldAtTheirPlace)
{
    const QString folder = "suite_outcomes/" + QString::fromStdString(GetParam());
    QFile expected(sourceFolder + '/' + folder + "/expected.txt");
    ASSERT_TRUE(expected.open(QIODevice::ReadOnly));
    SuiteRun run({folder});
    run.finish();
    const RunReport report = run.report();
    ASSERT_EQ(1, report.cases.size()) << run.output();
    EXPECT_EQ(expected.readAll().toStdString(), summaryOf(report.cases[0].attempts.last()).toStdString());
}

INSTANTIATE_TEST_SUITE_P(All, SampleOutcomes, testing::ValuesIn(casesOf("suite_outcomes")), caseName);

TEST(SampleCrash, EndsTheWaitWithinASecondAndLaterCasesRun)
{
    // Built for it, the address sanitizer in the agent would make an exit of the signal.
    qputenv("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + ":handle_segv=0");
    SuiteRun run({"suite_crash"});
    const QRegularExpression pattern("\"pid (\\d+)\"");
    pid_t application = 0;
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 30'000 && application == 0) {
        application = pattern.match(run.streamText()).captured(1).toInt();
        QThread::msleep(10);
    }
    ASSERT_GT(application, 0);
    QThread::msleep(200);
    const QDateTime killed = QDateTime::currentDateTime();
    ASSERT_EQ(0, ::kill(application, SIGSEGV));
    EXPECT_EQ(1, run.finish());

    const RunReport report = run.report();
    ASSERT_EQ(2, report.cases.size()) << run.output();
    const AttemptReport& crashed = report.cases[0].attempts[0];
    EXPECT_EQ("error\n"
              "log suite_crash/tst_a/test.js:3 pid N\n"
              "error suite_crash/tst_a/test.js:4 The application 'calculator' was killed by signal 11 "
              "(SIGSEGV)\n"
              "error suite_crash/tst_a/test.js:4 The application has ended: it was killed by signal 11 "
              "(SIGSEGV)\n"
              "application calculator: was killed by signal 11 (SIGSEGV)\n",
              summaryOf(crashed).toStdString());
    EXPECT_TRUE(crashed.applications.at(0).output.contains("propagateSizeHints"))
        << crashed.applications.at(0).output.toStdString();
    EXPECT_LT(killed.msecsTo(crashed.entries.last().time), 1000);
    EXPECT_EQ("passed", caseOutcomeName(report.cases[1].outcome())) << run.output();
}

/** A target that waits for a test, and a test case that attaches to it. */
class AttachedTarget : public testing::Test
{
protected:
    void write(const QString& name, const QByteArray& text)
    {
        QDir(m_folder.path()).mkpath(QFileInfo(name).path());
        QFile file(m_folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    /** The summary of a test case that attaches and then does `last`. */
    std::string summaryAfter(const QByteArray& last)
    {
        const QString socket = m_folder.filePath("socket");
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("TORVIX_AGENT_LISTEN", socket);
        environment.insert("QT_QPA_GENERIC_PLUGINS", "torvixagent");
        environment.insert("QT_PLUGIN_PATH", TORVIX_TEST_BINARY_DIR "/lib/qt5/plugins");
        QProcess target;
        target.setProcessEnvironment(environment);
        target.start(TORVIX_TEST_BINARY_DIR "/tests/torvixtarget", QStringList());
        QElapsedTimer timer;
        timer.start();
        while (!QFile::exists(socket + ".token") && timer.elapsed() < 30'000)
            QThread::msleep(10);
        write("suite/tst_a/test.js", "function main() {\n"
                                     "    const app = attachToApplication('" +
                                         socket.toUtf8() +
                                         "');\n"
                                         "    const controls = waitForObjectExists({ type: 'Controls' });\n"
                                         "    " +
                                         last + "\n}\n");
        SuiteRun run({m_folder.filePath("suite")});
        run.finish();
        target.kill();
        target.waitForFinished();
        const RunReport report = run.report();
        const std::string summary =
            report.cases.isEmpty() ? run.output() : summaryOf(report.cases[0].attempts[0]).toStdString();
        return QString::fromStdString(summary)
            .remove(QDir(m_folder.path()).canonicalPath() + '/')
            .toStdString();
    }

    QTemporaryDir m_folder;
};

TEST_F(AttachedTarget, MayQuitWhenItIsToldTo)
{
    EXPECT_EQ("passed\napplication torvixtarget: quit\n",
              summaryAfter("controls.quitLater(100); test.verify(waitFor(() => !app.isRunning, 5000));"));
}

TEST_F(AttachedTarget, ThatGoesWithoutAWordIsAnError)
{
    const std::string summary = summaryAfter("controls.crash();");
    EXPECT_NE(std::string::npos,
              summary.find("error suite/tst_a/test.js:4 The application 'torvixtarget' has gone: "))
        << summary;
}

} // namespace
