// The real program on real suites: outcomes, selection, bad input, the other verbs.
#include "runs.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

using namespace Torvix;

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
    write("s/tst_9async/test.js", "async function main() {\n  await 1;\n  undefined.x;\n}\n");
    write("s/tst_9stuck/test.js", "async function main() {\n  await new Promise(() => 0);\n}\n");
    write("s/tst_9xfatal/test.js",
          "async function main() {\n  await 1;\n  test.fatal('the end');\n  test.fail('never');\n}\n");
    write("s/tst_9yfine/test.js", "async function main() {\n  await 1;\n  test.log('on');\n}\n");
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
        {CaseOutcome::Error, 3, "undefined is not an object"},
        {CaseOutcome::Error, 0, "The function waits for a promise that nothing settles"},
        {CaseOutcome::Failed, 3, "the end"},
        {CaseOutcome::Passed, 0, ""},
    };
    const RunReport seen = report();
    ASSERT_EQ(int(table.size()), seen.cases.size());
    for (int i = 0; i < seen.cases.size(); ++i) {
        const CaseReport& testCase = seen.cases[i];
        const Expected& expected = table[std::size_t(i)];
        SCOPED_TRACE(testCase.name.toStdString());
        EXPECT_EQ(caseOutcomeName(expected.outcome), caseOutcomeName(testCase.outcome()));
        const ResultEntry* entry = failure(seen, i);
        const bool isFine =
            expected.outcome == CaseOutcome::Passed || expected.outcome == CaseOutcome::Skipped;
        EXPECT_EQ(isFine, entry == nullptr);
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
    EXPECT_EQ(QStringLiteral("at inner (%1:2)\nat %1:4\nat main (%2:2)")
                  .arg(path("s/tst_a/extra.js"), path("s/tst_a/test.js")),
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
    EXPECT_EQ("torvixrunner: no test case matches\n", m_output);
    EXPECT_EQ(0, run({"list", "--json", "s", "s/tst_b"}));
    const QJsonArray list = QJsonDocument::fromJson(m_output.toUtf8()).array();
    ASSERT_EQ(3, list.size()) << "a case that two paths name runs once";
    EXPECT_EQ(QJsonArray{"slow"}, list[1]["tags"].toArray());
    EXPECT_EQ(path("s/tst_b/test.js"), list[1]["script"].toString());
    EXPECT_EQ(300, list[1]["timeoutSecs"].toInt());
    EXPECT_EQ(4, run({"run", "s", "--last-failed"}));
    EXPECT_EQ("torvixrunner: there is no last run in 'results'; run without --last-failed first, or give its "
              "folder with --output\n",
              m_output);
}

TEST_F(Runs, RepeatedCasesKeepTheirOwnRetriesAndTheLimitTellsWhatDidNotRun)
{
    write("s/tst_a/test.js", "function main() { test.fail('no'); }\n");
    write("s/tst_b/test.js", "function main() {}\n");
    EXPECT_EQ(1, run({"run", "s", "--retries", "1", "--repeat-each", "3", "--max-failures", "2"}));
    const RunReport seen = report();
    ASSERT_EQ(2, seen.cases.size());
    for (const CaseReport& each : seen.cases)
        EXPECT_EQ(2, each.attempts.size());
    EXPECT_EQ(4, seen.notRunCount());
    EXPECT_TRUE(m_output.contains("2 failed, 4 not run in ")) << m_output.toStdString();
}

TEST_F(Runs, HostileTextsReachATerminalHarmlessAndWhole)
{
    write("s/tst_a/test.js", "function main() {\n  test.fail('a\\u0000b\\u001b[31m', 'x'.repeat(100000));\n"
                             "  test.fail('second');\n}\n");
    EXPECT_EQ(1, run({"run", "s"}));
    EXPECT_TRUE(m_output.contains("   a\\x00b\\x1b[31m\n")) << m_output.left(500).toStdString();
    EXPECT_TRUE(m_output.contains("   second\n"));
    EXPECT_TRUE(m_output.contains("more characters are in the result stream]"));
    EXPECT_LT(m_output.size(), 6000);
    EXPECT_EQ(100000, report().cases.at(0).attempts.at(0).entries.at(0).detail.size());
}

TEST_F(Runs, AReportElsewhereFindsItsAttachments)
{
    write("s/tst_a/test.js", "function main() { test.attachFile(arguments ? 'data' : '', 'the data'); }\n");
    write("s/tst_a/data", "x");
    write("elsewhere/x", "");
    EXPECT_EQ(0, run({"run", "s", "--reporter", "html:elsewhere/a.html"})) << m_output.toStdString();
    EXPECT_EQ(0, run({"report", "results/results.ndjson", "--reporter", "html:elsewhere/b.html"}));
    for (const char* name : {"elsewhere/a.html", "elsewhere/b.html"}) {
        QFile page(path(name));
        ASSERT_TRUE(page.open(QIODevice::ReadOnly));
        EXPECT_TRUE(page.readAll().contains("\"../results/tst_a/data\"")) << name;
    }
    EXPECT_EQ(0, run({"run", "s"}));
    EXPECT_EQ(QStringList{"data"}, QDir(path("results/tst_a")).entryList(QDir::Files))
        << "attachments of an earlier run go with it";
}

TEST_F(Runs, ReportsThatCannotBeWrittenInTheEndAreToldEachAndLoseNothing)
{
    write("s/tst_a/test.js", "function main() { test.pass('fine'); }\n");
    EXPECT_EQ(3, run({"run", "s", "--reporter", "junit:/dev/full", "--reporter", "tap:out.tap"}));
    EXPECT_TRUE(m_output.contains("torvixrunner: The report '/dev/full' cannot be written: No space left on "
                                  "device; make room, then: torvixrunner report " +
                                  path("results/results.ndjson") + " --reporter junit:FILE\n"))
        << m_output.toStdString();
    EXPECT_TRUE(QFile::exists(path("out.tap")));
    EXPECT_EQ(3, run({"report", "results/results.ndjson", "--reporter", "tap:/dev/full"}));
    EXPECT_EQ(1, m_output.count('\n')) << m_output.toStdString();
    EXPECT_EQ(4, run({"report", "out.tap"}));
    EXPECT_TRUE(m_output.contains("is no result stream")) << m_output.toStdString();
    EXPECT_EQ(4, run({"report", "results"}));
    EXPECT_TRUE(m_output.contains("give the results.ndjson in it")) << m_output.toStdString();
}

TEST_F(Runs, AFullDiskIsToldAndWhatWasWrittenIsAReport)
{
    write("s/tst_a/test.js", "function main() { test.log('x'.repeat(30000)); }\n");
    write("s/tst_b/test.js", "function main() { test.log('y'.repeat(90000)); }\n");
    QProcess process;
    process.setWorkingDirectory(m_folder.path());
    process.setProcessChannelMode(QProcess::MergedChannels);
    // A limit for the size of files, in blocks of 512 bytes, fails a write as a full disk does.
    process.start("/bin/sh", {"-c", "ulimit -f 128; trap '' XFSZ; exec \"$0\" run s", TORVIX_RUNNER});
    ASSERT_TRUE(process.waitForFinished(60'000));
    m_output = QString::fromUtf8(process.readAll());
    EXPECT_EQ(3, process.exitCode()) << m_output.toStdString();
    EXPECT_TRUE(
        m_output.contains("torvixrunner: The result stream could not be written whole: File too large; "
                          "make room, or choose another folder with --output, and run again\n"))
        << m_output.toStdString();
    EXPECT_EQ(0, run({"report", "results/results.ndjson", "--reporter", "json:all.json"}));
    const RunReport seen = report();
    EXPECT_EQ(CaseOutcome::Passed, seen.cases.at(0).outcome());
    EXPECT_FALSE(seen.complete);
}

TEST_F(Runs, BadInputIsOneLineAndTheRightStatus)
{
    write("s/tst_a/test.js", "function main() {}\n");
    write("blocker", "");
    EXPECT_EQ(4, run({"run", "nowhere"}));
    EXPECT_EQ("torvixrunner: nowhere: there is no such suite or test case\n", m_output);
    EXPECT_EQ(4, run({"run", "s", "--output", "blocker/results"}));
    EXPECT_EQ(
        "torvixrunner: The output folder 'blocker/results' cannot be made; choose another with --output\n",
        m_output);
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

TEST_F(Runs, ANewSuiteIsOneThatRuns)
{
    EXPECT_EQ(0, run({"init", "suite_new"})) << m_output.toStdString();
    EXPECT_EQ(0, run({"init", "suite_new/tst_second"}));
    EXPECT_EQ(0, run({"list", "suite_new"}));
    EXPECT_EQ("suite_new/tst_first\nsuite_new/tst_second\n", m_output);
    EXPECT_EQ(4, run({"init", "suite_new/second"}));
    EXPECT_TRUE(m_output.contains("tst_second")) << m_output.toStdString();
    EXPECT_EQ(4, run({"init", "suite_new"}));
    EXPECT_TRUE(m_output.contains("is there already")) << m_output.toStdString();
}

TEST_F(Runs, ANewSuiteForAProgramPassesAtOnce)
{
    EXPECT_EQ(1, run({"init", "suite_app", "./no-such-program"}));
    EXPECT_TRUE(m_output.contains("no-such-program")) << m_output.toStdString();
    EXPECT_FALSE(QDir(path("suite_app")).exists());

    // A link, so that there is a blank in the path.
    QDir(m_folder.path()).mkdir("a folder");
    ASSERT_TRUE(QFile::link(TORVIX_TEST_BINARY_DIR "/tests/torvixtarget", path("a folder/an app")));
    EXPECT_EQ(0, run({"init", "suite_app", "a folder/an app"})) << m_output.toStdString();
    EXPECT_EQ(0, run({"init", "suite_app/tst_more"})) << m_output.toStdString();
    EXPECT_EQ(0, run({"run", "suite_app"})) << m_output.toStdString();
    const RunReport seen = report();
    ASSERT_EQ(2, seen.cases.size());
    for (const CaseReport& each : seen.cases)
        EXPECT_EQ(1, each.attempts[0].applications.size()) << each.name.toStdString();
}

TEST_F(Runs, InspectShowsTheNameThatFindsEachObject)
{
    const QString target = QStringLiteral(TORVIX_TEST_BINARY_DIR "/tests/torvixtarget");
    EXPECT_EQ(0, run({"inspect", "--type", "QPush*", "--properties", target})) << m_output.toStdString();
    for (const QString& line : m_output.split('\n', Qt::SkipEmptyParts))
        EXPECT_TRUE(line.startsWith("    ") || line.contains(QRegularExpression("^QPush.*  \\{type='QPush")))
            << line.toStdString();
    EXPECT_TRUE(m_output.contains(QRegularExpression("\n    enabled +  = true\n"))) << m_output.toStdString();
    EXPECT_EQ(0, run({"inspect", "--json", target}));
    EXPECT_TRUE(QJsonDocument::fromJson(m_output.toUtf8())[0]["children"].isArray());
    EXPECT_EQ(1, run({"inspect", "--name", "QPush", target}));
    EXPECT_EQ("torvixrunner: no object matches; * stands for any characters\n", m_output);
    EXPECT_EQ(1, run({"inspect", "no-such-application"}));
    EXPECT_EQ(
        "torvixrunner: Cannot start no-such-application: there is no such program in PATH; give its path, "
        "or add its folder to PATH\n",
        m_output);
}

TEST_F(Runs, TheDoctorTellsWhatIsMissing)
{
    EXPECT_EQ(0, run({"doctor", QStringLiteral(TORVIX_TEST_BINARY_DIR "/tests/torvixtarget")}))
        << m_output.toStdString();
    EXPECT_TRUE(m_output.endsWith("Nothing is missing that is needed.\n")) << m_output.toStdString();
    struct Row
    {
        const char* platform;
        const char* display;
        const char* program;
        const char* told;
    };
    for (const Row& row : std::vector<Row>{
             {"", "", nullptr, "MISSING  applications have a display: DISPLAY is not set\n"},
             {"xcb", ":59999", nullptr, "MISSING  applications have a display: DISPLAY=:59999\n"},
             {"offscreen", ":59999", "/bin/true", "it exited with status 0 before its agent called back"},
             {"offscreen", "", TORVIX_RUNNER, "MISSING  '" TORVIX_RUNNER "' starts and can be tested\n"}}) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", row.platform);
        environment.insert("DISPLAY", row.display);
        environment.remove("WAYLAND_DISPLAY");
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(TORVIX_RUNNER,
                      row.program ? QStringList{"doctor", row.program} : QStringList{"doctor"});
        ASSERT_TRUE(process.waitForFinished(60'000));
        EXPECT_EQ(1, process.exitCode());
        const QString told = QString::fromUtf8(process.readAllStandardOutput());
        EXPECT_TRUE(told.contains(row.told)) << told.toStdString();
    }
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
    const AttemptReport& miss = seen.cases[2].attempts[0];
    EXPECT_TRUE(miss.objectTree.contains("QPushButton")) << m_output.toStdString();
    ASSERT_EQ(1, miss.entries.last().attachments.size());
    QFile screen(miss.entries.last().attachments[0].path);
    EXPECT_TRUE(screen.open(QIODevice::ReadOnly) && screen.read(4) == "\x89PNG")
        << screen.fileName().toStdString();
    EXPECT_TRUE(crash.entries.last().attachments.isEmpty()) << "there is nothing to see any more";
}

} // namespace
