// The real program when a run is to end before its time: limits, signals, a closed pipe.
#include "runs.h"

namespace {

using namespace Torvix;

TEST_F(Runs, ARunawayScriptIsStoppedByItsTimeWhereverItIs)
{
    write("s/suite.ini", "[General]\nApplicationFolders = \"" TORVIX_TEST_BINARY_DIR "/tests\"\n");
    write("s/tst_a_loop/test.js", "function main() {\n  for (;;);\n}\n");
    write("s/tst_b_poll/test.js", "function main() {\n  for (;;)\n    snooze(0.01);\n}\n");
    write("s/tst_c_wait/test.js", "function main() {\n  startApplication('torvixtarget');\n"
                                  "  waitForObject({ type: 'QNothing' }, 60000);\n}\n");
    write("s/tst_d/test.js", "function main() { test.pass('still here'); }\n");
    for (const char* name : {"tst_a_loop", "tst_b_poll", "tst_c_wait"})
        write(QStringLiteral("s/%1/test.ini").arg(name), "[General]\nTimeoutSecs = 1\n");
    EXPECT_EQ(1, run({"run", "s"})) << m_output.toStdString();
    const RunReport seen = report();
    ASSERT_EQ(4, seen.cases.size());
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(seen.cases[i].name.toStdString());
        const AttemptReport& attempt = seen.cases[i].attempts[0];
        EXPECT_EQ(CaseOutcome::Error, attempt.outcome);
        ASSERT_TRUE(failure(seen, i));
        EXPECT_EQ("The test case took longer than 1 s", failure(seen, i)->message);
        EXPECT_EQ(i < 1 ? 2 : 3, failure(seen, i)->line);
        EXPECT_EQ(&attempt.entries.last(), failure(seen, i)) << "what follows from the stop is no failure";
        EXPECT_LT(attempt.durationMs, 10'000);
    }
    EXPECT_EQ("ended by the runner", seen.cases[2].attempts[0].applications.at(0).ending);
    EXPECT_EQ(CaseOutcome::Passed, seen.cases.at(3).outcome());
}

TEST_F(Runs, GoOnWhenNobodyReadsTheOutputAnyMore)
{
    for (const char* name : {"tst_a", "tst_b", "tst_c"})
        write(QStringLiteral("s/%1/test.js").arg(name), "function main() { snooze(0.1); }\n");
    QProcess process;
    process.setWorkingDirectory(m_folder.path());
    process.start("/bin/sh", {"-c", "{ \"$0\" run s; echo $? >status; } | head -n 1", TORVIX_RUNNER});
    ASSERT_TRUE(process.waitForFinished(60'000));
    EXPECT_TRUE(report().complete);
    EXPECT_TRUE(QFile::exists(path("results/index.html")));
    QFile status(path("status"));
    ASSERT_TRUE(status.open(QIODevice::ReadOnly));
    EXPECT_EQ("0\n", status.readAll());
}

TEST_F(Runs, ASecondCtrlCLeavesAtOnceAndLeavesNoApplication)
{
    // An application that cannot be asked to end takes the runner its time.
    write("stubborn", "#!/bin/sh\ntrap '' TERM\nexec " TORVIX_TEST_BINARY_DIR "/tests/torvixtarget\n");
    QFile::setPermissions(path("stubborn"), QFile::ReadOwner | QFile::ExeOwner);
    write("s/tst_a/test.js",
          "function main() {\n  test.log('pid ' + startApplication('../../stubborn').pid);\n"
          "}\n");
    QProcess process;
    start(&process, {"run", "s"});
    const pid_t application = loggedPid();
    ASSERT_GT(application, 0) << process.readAll().toStdString();
    kill(pid_t(process.processId()), SIGINT);
    QThread::msleep(100);
    kill(pid_t(process.processId()), SIGINT);
    ASSERT_TRUE(process.waitForFinished(1500)) << "the grace of 2 s for the application was waited for";
    EXPECT_EQ(2, process.exitCode());
    EXPECT_TRUE(hasGone(application));
    EXPECT_FALSE(report().complete);
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
    const pid_t application = loggedPid();
    ASSERT_GT(application, 0) << process.readAll().toStdString();
    process.kill();
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_TRUE(hasGone(application)) << "the application goes on";
}

} // namespace
