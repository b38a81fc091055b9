#include "testsupport/report/resultstream.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <csignal>

namespace {

using namespace Torvix;

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
        QFile file(path(folder + "/results.ndjson"));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << m_output.toStdString();
        return readResultStream(file);
    }

    const ResultEntry* failure(const RunReport& report, int index = 0)
    {
        return report.cases.at(index).attempts.last().firstFailure();
    }

    QTemporaryDir m_folder;
    QString m_output;
};

TEST_F(Runs, WithoutAnApplicationTellEachOutcomeWithItsPlace)
{
    write("s/shared/scripts/names.js", "export const answer = 42;\n");
    write("s/tst_1pass/test.js",
          "import * as names from 'names.js';\nfunction main() {\n"
          "  const asExpected = [test.compare(names.answer, 42, 'answer'), test.xverify(false)];\n"
          "  test.compare(asExpected.join(), 'true,true');\n}\n");
    write("s/tst_2fail/test.js",
          "function check(x) {\n  return test.verify(x, 'truth');\n}\nfunction main() {\n"
          "  if (check(false) !== false) test.fatal('a failed check answers false');\n  test.log('goes "
          "on');\n}\n");
    write("s/tst_3error/test.js", "function main() {\n  undefined.x;\n}\n");
    write("s/tst_4skip/test.js", "function main() {\n  test.skip('not here');\n  test.fail('never');\n}\n");
    write("s/tst_5syntax/test.js", "function main() {\n  let let = 1;\n}\n");
    write("s/tst_6nomain/test.js", "var x = 1;\n");
    write("s/tst_7fatal/test.js", "function main() {\n  test.fatal('the end');\n  test.fail('never');\n}\n");
    write("s/tst_8primitive/test.js", "function main() {\n  throw 'just text';\n}\n");
    EXPECT_EQ(1, run({"run", "s"})) << m_output.toStdString();

    struct Expected
    {
        CaseOutcome outcome;
        int line;
        const char* message;
    };
    const std::vector<Expected> table = {
        {CaseOutcome::Passed, 0, ""},
        {CaseOutcome::Failed, 2, "truth"},
        {CaseOutcome::Error, 2, "undefined is not an object"},
        {CaseOutcome::Skipped, 0, ""},
        {CaseOutcome::Error, 2, ""},
        {CaseOutcome::Error, 1, "The script has no function main()"},
        {CaseOutcome::Failed, 2, "the end"},
        {CaseOutcome::Error, 2, "Script threw exception: just text"},
    };
    const RunReport seen = report();
    ASSERT_EQ(int(table.size()), seen.cases.size());
    for (int i = 0; i < seen.cases.size(); ++i) {
        const CaseReport& testCase = seen.cases[i];
        const Expected& expected = table[std::size_t(i)];
        SCOPED_TRACE(testCase.name.toStdString());
        EXPECT_EQ(caseOutcomeName(expected.outcome), caseOutcomeName(testCase.outcome()));
        const ResultEntry* entry = failure(seen, i);
        EXPECT_EQ(expected.line > 0, entry != nullptr);
        if (!entry)
            continue;
        EXPECT_EQ(expected.line, entry->line);
        EXPECT_EQ(testCase.path + "/test.js", entry->file);
        EXPECT_TRUE(entry->message.startsWith(expected.message)) << entry->message.toStdString();
    }
    EXPECT_EQ("goes on", seen.cases[1].attempts[0].entries[1].message);
    EXPECT_EQ(1, seen.cases[3].attempts[0].entries.size());
    EXPECT_TRUE(m_output.contains("3) s/tst_5syntax error")) << m_output.toStdString();
    EXPECT_TRUE(QFile::exists(path("results/index.html")));
}

TEST_F(Runs, ErrorsOfSourcedFilesAreToldThere)
{
    write("s/tst_a/extra.js", "function inner() {\n  throw 'text';\n}\ninner();\n");
    write("s/tst_a/test.js", "function main() {\n  source('extra.js');\n}\n");
    EXPECT_EQ(1, run({"run", "s"}));
    const RunReport seen = report();
    const ResultEntry* entry = failure(seen);
    ASSERT_TRUE(entry);
    EXPECT_EQ(path("s/tst_a/extra.js"), entry->file);
    EXPECT_EQ(2, entry->line);
    EXPECT_EQ(
        QStringLiteral("at %1:2\nat %1:4\nat %2:2").arg(path("s/tst_a/extra.js"), path("s/tst_a/test.js")),
        entry->detail);
}

TEST_F(Runs, RetriesStayVisibleAndLastFailedRunsOnlyThose)
{
    write("s/tst_good/test.js", "function main() { test.pass('fine'); }\n");
    write("s/tst_flaky/test.js", "function main() {\n  for (const name of ['one', 'two'])\n"
                                 "    test.compareTextFiles('mark', name, { message: name });\n}\n");
    write("s/tst_flaky/mark", "x");
    write("s/tst_flaky/one", "x");
    write("s/tst_flaky/two", "y");
    EXPECT_EQ(1, run({"run", "s", "--retries", "1", "--quiet"}));
    EXPECT_FALSE(m_output.contains("tst_good")) << m_output.toStdString();
    EXPECT_EQ(2, report().cases.at(0).attempts.size());

    write("s/tst_flaky/two", "x");
    EXPECT_EQ(0, run({"run", "s", "--last-failed", "--reporter", "junit", "--reporter", "tap:out.tap"}));
    EXPECT_EQ(1, report().cases.size());
    EXPECT_TRUE(QFile::exists(path("results/junit.xml")));
    EXPECT_TRUE(QFile::exists(path("out.tap")));
    EXPECT_EQ(5, run({"run", "s", "--last-failed"})) << m_output.toStdString();
}

TEST_F(Runs, SelectByTagAndName)
{
    for (const char* name : {"tst_a", "tst_b", "tst_c"})
        write(QStringLiteral("s/%1/test.js").arg(name), "function main() {}\n");
    write("s/tst_b/test.ini", "[General]\nTags = \"slow\"\n");
    EXPECT_EQ(0, run({"list", "s", "--exclude-tags", "slow"}));
    EXPECT_EQ("s/tst_a\ns/tst_c\n", m_output);
    EXPECT_EQ(0, run({"run", "--list", "s", "--grep", "^s/tst_[bc]$", "--tags", "slow"}));
    EXPECT_EQ("s/tst_b  [slow]\n", m_output);
    EXPECT_EQ(5, run({"run", "s", "--grep", "nothing"}));
    EXPECT_EQ("torvixrunner: no test case fits\n", m_output);
}

TEST_F(Runs, BadInputIsOneLineAndTheRightStatus)
{
    write("s/tst_a/test.js", "function main() {}\n");
    write("blocker", "");
    EXPECT_EQ(4, run({"run", "nowhere"}));
    EXPECT_EQ("torvixrunner: nowhere: there is no such suite or test case\n", m_output);
    EXPECT_EQ(4, run({"run", "s", "--output", "blocker/results"}));
    EXPECT_EQ("torvixrunner: The output folder 'blocker/results' cannot be made; use --output\n", m_output);
    EXPECT_EQ(4, run({"run", "s", "--no-such"}));
    EXPECT_EQ(1, m_output.count('\n')) << m_output.toStdString();
}

TEST_F(Runs, RenewVerificationPointsOnDemand)
{
    write("s/tst_vp/test.js",
          "function main() {\n  startApplication('" TORVIX_TEST_BINARY_DIR "/tests/torvixtarget');\n"
          "  test.vpWithObject('button', {type: 'QPushButton', name: 'count'});\n}\n");
    EXPECT_EQ(1, run({"run", "s"})) << "there is none yet";
    EXPECT_TRUE(m_output.contains("There is no verification point 'button'")) << m_output.toStdString();
    EXPECT_EQ(0, run({"run", "s", "--update-vps"})) << m_output.toStdString();
    EXPECT_EQ("Verification point 'button' was made",
              report().cases.at(0).attempts.last().entries.last().message);
    EXPECT_EQ(0, run({"run", "s"})) << m_output.toStdString();
    write("s/tst_vp/verificationPoints/button.json",
          R"({"checks": [{"properties": {"text": "old", "enabled": true}}]})");
    EXPECT_EQ(1, run({"run", "s"}));
    EXPECT_EQ(0, run({"run", "s", "--update-vps"})) << m_output.toStdString();
    EXPECT_EQ(0, run({"run", "s"})) << m_output.toStdString();
}

TEST_F(Runs, ARunawayScriptIsStoppedByItsTime)
{
    write("s/tst_a_loop/test.js", "function main() {\n  for (;;);\n}\n");
    write("s/tst_a_loop/test.ini", "[General]\nTimeoutSecs = 1\n");
    write("s/tst_b/test.js", "function main() { test.pass('still here'); }\n");
    EXPECT_EQ(1, run({"run", "s"})) << m_output.toStdString();
    const RunReport seen = report();
    EXPECT_EQ(CaseOutcome::Error, seen.cases.at(0).outcome());
    EXPECT_TRUE(m_output.contains("The test case took longer than 1 s")) << m_output.toStdString();
    EXPECT_EQ(CaseOutcome::Passed, seen.cases.at(1).outcome());
}

TEST_F(Runs, CtrlCEndsTheRunWithItsReport)
{
    write("s/tst_a/test.js", "function main() {\n  test.log('started');\n  for (;;);\n}\n");
    write("s/tst_b/test.js", "function main() {}\n");
    QProcess process;
    start(&process, {"run", "s"});
    QElapsedTimer timer;
    timer.start();
    QFile stream(path("results/results.ndjson"));
    while (timer.elapsed() < 20'000) {
        if (stream.open(QIODevice::ReadOnly) && stream.readAll().contains("\"started\""))
            break;
        stream.close();
        QThread::msleep(20);
    }
    stream.close();
    kill(pid_t(process.processId()), SIGINT);
    ASSERT_TRUE(process.waitForFinished(20'000));
    EXPECT_EQ(2, process.exitCode());
    const RunReport seen = report();
    EXPECT_TRUE(seen.complete);
    EXPECT_TRUE(seen.interrupted);
    ASSERT_EQ(1, seen.cases.size());
    EXPECT_EQ(CaseOutcome::Interrupted, seen.cases[0].outcome());
    EXPECT_TRUE(QFile::exists(path("results/index.html")));
}

TEST_F(Runs, KilledAtAnyMomentLeaveAStreamThatGivesAReport)
{
    write("s/tst_a/test.js", "function main() {\n  test.pass('before');\n  for (;;);\n}\n");
    QProcess process;
    start(&process, {"run", "s"});
    QElapsedTimer timer;
    timer.start();
    QByteArray written;
    while (timer.elapsed() < 20'000 && !written.contains("before")) {
        QFile stream(path("results/results.ndjson"));
        if (stream.open(QIODevice::ReadOnly))
            written = stream.readAll();
        QThread::msleep(20);
    }
    process.kill();
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(0, run({"report", "results/results.ndjson", "--reporter", "tap:-"}));
    EXPECT_TRUE(m_output.contains("not ok 1 - s/tst_a")) << m_output.toStdString();
    EXPECT_TRUE(m_output.contains("Bail out!"));
}

TEST_F(Runs, KilledTakeTheirApplicationsWithThem)
{
    write("s/suite.ini", "[General]\nApplicationFolders = \"" TORVIX_TEST_BINARY_DIR "/tests\"\n");
    write("s/tst_a/test.js", "function main() {\n  test.log('pid ' + startApplication('torvixtarget').pid);\n"
                             "  for (;;);\n}\n");
    QProcess process;
    start(&process, {"run", "s"});
    QElapsedTimer timer;
    timer.start();
    const QRegularExpression pattern("\"pid (\\d+)\"");
    pid_t application = 0;
    while (timer.elapsed() < 20'000 && application == 0) {
        QFile stream(path("results/results.ndjson"));
        if (stream.open(QIODevice::ReadOnly))
            application = pattern.match(QString::fromUtf8(stream.readAll())).captured(1).toInt();
        QThread::msleep(20);
    }
    ASSERT_GT(application, 0) << process.readAll().toStdString();
    process.kill();
    ASSERT_TRUE(process.waitForFinished());
    timer.start();
    while (::kill(application, 0) == 0 && timer.elapsed() < 5'000)
        QThread::msleep(20);
    EXPECT_NE(0, ::kill(application, 0)) << "the application goes on";
}

TEST_F(Runs, ANewSuiteIsOneThatRuns)
{
    EXPECT_EQ(0, run({"init", "suite_new"})) << m_output.toStdString();
    EXPECT_EQ(0, run({"init", "suite_new/tst_second"}));
    EXPECT_EQ(0, run({"list", "suite_new"}));
    EXPECT_EQ("suite_new/tst_first\nsuite_new/tst_second\n", m_output);
    EXPECT_EQ(4, run({"init", "suite_new"}));
    EXPECT_TRUE(m_output.contains("is there already")) << m_output.toStdString();
}

TEST_F(Runs, TheExampleSuitePasses)
{
    EXPECT_EQ(0, run({"run", QStringLiteral(TORVIX_EXAMPLES "/suite_calculator")})) << m_output.toStdString();
    const RunReport seen = report();
    EXPECT_EQ(seen.cases.size(), seen.count(CaseOutcome::Passed));
    const ApplicationReport& calculator = seen.cases.at(0).attempts.at(0).applications.at(0);
    EXPECT_EQ("calculator", calculator.name);
    EXPECT_EQ("ended with the test case", calculator.ending);
}

TEST_F(Runs, WhatGoesWrongWithAnApplicationIsToldAtItsPlace)
{
    write("s/suite.ini", "[General]\nApplicationFolders = \"" TORVIX_TEST_BINARY_DIR "/tests\"\n");
    write("s/tst_crash/test.js", "function main() {\n  const app = startApplication('torvixtarget');\n"
                                 "  test.verify(app.isRunning);\n"
                                 "  waitForObjectExists({ type: 'Controls' }).crash();\n}\n");
    write("s/tst_gone/test.js", "function main() {\n  startApplication('no-such-application');\n}\n");
    write("s/tst_miss/test.js", "function main() {\n  startApplication('torvixtarget');\n"
                                "  findObject({ type: 'QPushButton', text: 'nine' });\n}\n");
    EXPECT_EQ(1, run({"run", "s"})) << m_output.toStdString();
    const RunReport seen = report();
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(failure(seen, i)) << m_output.toStdString();
    const AttemptReport& crash = seen.cases[0].attempts[0];
    ASSERT_EQ(1, crash.applications.size()) << m_output.toStdString();
    EXPECT_TRUE(crash.applications[0].ending.contains("signal 6")) << m_output.toStdString();
    EXPECT_EQ(CaseOutcome::Error, crash.outcome);
    EXPECT_EQ(4, crash.entries.last().line) << m_output.toStdString();
    EXPECT_EQ(2, failure(seen, 1)->line);
    EXPECT_TRUE(failure(seen, 1)->message.contains("no-such-application")) << m_output.toStdString();
    EXPECT_EQ(3, failure(seen, 2)->line);
    EXPECT_TRUE(failure(seen, 2)->message.contains("The closest is")) << m_output.toStdString();
    EXPECT_TRUE(seen.cases[2].attempts[0].objectTree.contains("QPushButton")) << m_output.toStdString();
}

} // namespace
