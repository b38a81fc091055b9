#include "support/processes.h"
#include "support/suiterun.h"

#include <algorithm>
#include <csignal>

namespace {

using namespace Torvix;

QStringList testCases(const QStringList& names)
{
    QStringList paths;
    for (const QString& name : names)
        paths += "suite_objects/" + name;
    return paths;
}

/** The processes that wrote their numbers down, `count` of them. */
QVector<int> members(const SuiteRun& run, int count)
{
    QElapsedTimer timer;
    for (timer.start(); timer.elapsed() < 30'000; QThread::msleep(20)) {
        QFile file(run.folder.filePath("pids"));
        const QList<QByteArray> lines =
            file.open(QIODevice::ReadOnly) ? file.readAll().split('\n') : QList<QByteArray>();
        if (lines.size() <= count)
            continue;
        QVector<int> pids;
        for (int i = 0; i < count; ++i)
            pids.append(lines[i].toInt());
        return pids;
    }
    return {};
}

class Objects : public testing::TestWithParam<const char*>
{
};

TEST_P(Objects, ThroughTheWholeTool)
{
    SuiteRun run(testCases({GetParam()}));
    EXPECT_EQ(0, run.finish()) << run.output();
}

INSTANTIATE_TEST_SUITE_P(Scripts, Objects,
                         testing::Values("tst_access", "tst_waiting", "tst_actions", "tst_contexts"),
                         [](const testing::TestParamInfo<const char*>& tested) {
                             return std::string(tested.param);
                         });

TEST(Timeouts, OfOneTestCaseAreNotThoseOfTheNext)
{
    SuiteRun run(testCases({"tst_timeout_changed", "tst_timeout_kept"}));
    EXPECT_EQ(0, run.finish()) << run.output();
}

bool areGone(const QVector<int>& pids)
{
    return std::all_of(pids.begin(), pids.end(), hasGone);
}

/** What has its own session, started by what the application has started, ends with the runner too. */
class Endings : public testing::TestWithParam<int>
{
};

TEST_P(Endings, TakeTheWholeFamily)
{
    SuiteRun run(testCases({"tst_stopping"}));
    ASSERT_TRUE(run.reaches("\"ready\"")) << run.process.readAll().toStdString();
    const QVector<int> family = members(run, 2);
    ASSERT_EQ(2, family.size());
    EXPECT_TRUE(isProcessRunning(family[0]) && isProcessRunning(family[1]));
    QElapsedTimer timer;
    timer.start();
    ::kill(pid_t(run.process.processId()), GetParam());
    ASSERT_TRUE(run.process.waitForFinished(20'000)) << "the waiting script does not see it";
    EXPECT_TRUE(areGone(family)) << "after " << timer.elapsed() << " ms";
}

TEST(Starting, IsGivenUpAtACtrlC)
{
    SuiteRun run(testCases({"tst_starting"}));
    const QVector<int> begun = members(run, 1);
    ASSERT_EQ(1, begun.size());
    QElapsedTimer timer;
    timer.start();
    ::kill(pid_t(run.process.processId()), SIGINT);
    ASSERT_TRUE(run.process.waitForFinished(15'000)) << "it waits for the start's own timeout";
    EXPECT_EQ(2, run.process.exitCode());
    EXPECT_TRUE(areGone(begun));
}

INSTANTIATE_TEST_SUITE_P(Signals, Endings, testing::Values(SIGINT, SIGTERM, SIGKILL));

} // namespace
