// What runs leave: reports, where they go, and what the next run knows of the last.
#include "runs.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>

namespace {

using namespace Torvix;

class RunReports : public Runs
{
protected:
    /** The exit code; what was printed on each stream is in m_output and m_errors. */
    int runApart(const QStringList& arguments, const QStringList& variables = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const QString& variable : variables)
            environment.insert(variable.section('=', 0, 0), variable.section('=', 1));
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(m_folder.path());
        process.start(TORVIX_RUNNER, arguments);
        EXPECT_TRUE(process.waitForFinished(60'000));
        m_output = QString::fromUtf8(process.readAllStandardOutput());
        m_errors = QString::fromUtf8(process.readAllStandardError());
        return process.exitCode();
    }

    QByteArray content(const QString& name)
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /** The names of the cases of the last run. */
    QString cases()
    {
        QStringList names;
        for (const CaseReport& each : report().cases)
            names += each.name;
        return names.join(' ');
    }

    QString m_errors;
};

TEST_F(RunReports, OnTheStandardOutputAreAloneThere)
{
    write("s/tst_a/test.js", "function main() { print('printed'); test.fail('no'); }\n");
    for (const char* format : {"json", "junit", "tap"}) {
        EXPECT_EQ(1, runApart({"run", "s", "--reporter", QStringLiteral("%1:-").arg(format)}));
        EXPECT_TRUE(m_errors.contains("printed\n")) << m_errors.toStdString();
        EXPECT_TRUE(m_errors.contains("1 failed in ")) << m_errors.toStdString();
        EXPECT_TRUE(m_errors.contains("Report: ")) << m_errors.toStdString();
        if (format == std::string("json"))
            EXPECT_EQ(1, QJsonDocument::fromJson(m_output.toUtf8())["counts"]["failed"].toInt());
        else if (format == std::string("tap"))
            EXPECT_TRUE(m_output.startsWith("TAP version 14\n1..1\nnot ok 1")) << m_output.toStdString();
        else
            EXPECT_TRUE(m_output.startsWith("<?xml") && m_output.endsWith("</testsuites>\n"));
    }
    EXPECT_EQ(0,
              runApart({"report", "results/results.ndjson", "--reporter", "tap:-", "--reporter", "junit"}));
    EXPECT_TRUE(m_errors.endsWith("/junit.xml\n")) << m_errors.toStdString();
    for (const QStringList& two : {QStringList{"tap:-", "json:-"}, QStringList{"tap:x", "json:./x"}}) {
        for (const QStringList& verb :
             {QStringList{"run", "s"}, QStringList{"report", "results/results.ndjson"}}) {
            EXPECT_EQ(4, runApart(verb + QStringList{"--reporter", two[0], "--reporter", two[1]}));
            EXPECT_TRUE(m_errors.contains("two reports cannot both go to ")) << m_errors.toStdString();
        }
    }
}

TEST_F(RunReports, ThatCannotBeWrittenAreToldBeforeTheRun)
{
    write("s/tst_a/test.js", "function main() { test.pass('fine'); }\n");
    write("blocker", "");
    EXPECT_EQ(0, run({"run", "s"}));
    const QByteArray before = content("results/results.ndjson");
    for (const char* bad : {"blocker/a.xml", "s", "/proc/none/a.xml"}) {
        EXPECT_EQ(4, run({"run", "s", "--reporter", QStringLiteral("junit:%1").arg(bad)}));
        EXPECT_TRUE(
            m_output.startsWith(QStringLiteral("torvixrunner: The report '%1' cannot be written: ").arg(bad)))
            << m_output.toStdString();
        EXPECT_EQ(1, m_output.count('\n')) << m_output.toStdString();
    }
    EXPECT_EQ(before, content("results/results.ndjson")) << "nothing has run";
    EXPECT_EQ(0, run({"run", "s", "--reporter", "junit:new/folder/out.xml", "--reporter", "tap:/dev/null"}));
    EXPECT_TRUE(content("new/folder/out.xml").contains("<testsuites"));
}

TEST_F(RunReports, LastFailedIsWhatHasNotPassedInTheLastRunThatMeantIt)
{
    const char* fails = "function main() { test.fail('no'); }\n";
    const char* passes = "function main() {}\n";
    for (const char* name : {"tst_a", "tst_b", "tst_c", "tst_d"})
        write(QStringLiteral("s/%1/test.js").arg(name), fails);
    EXPECT_EQ(1, run({"run", "s", "--max-failures", "1"}));
    EXPECT_EQ("tst_a", cases());
    EXPECT_EQ(0, run({"list", "s"}));

    write("s/tst_c/test.js", passes);
    EXPECT_EQ(0, run({"run", "s", "--last-failed", "--grep", "tst_c"}));
    EXPECT_EQ("tst_c", cases()) << "it never ran";
    EXPECT_EQ(1, run({"run", "s", "--last-failed", "--max-failures", "2"}));
    EXPECT_EQ("tst_a tst_b", cases()) << "they are outside of what the last run was asked for";

    // Killed: nothing at all is written at the end.
    write("s/tst_a/test.js", passes);
    write("s/tst_b/test.js", "function main() { test.log('pid 1'); for (;;); }\n");
    QProcess process;
    start(&process, {"run", "s", "--last-failed"});
    ASSERT_EQ(1, loggedPid());
    process.kill();
    ASSERT_TRUE(process.waitForFinished());
    for (const char* name : {"tst_b", "tst_d"})
        write(QStringLiteral("s/%1/test.js").arg(name), passes);
    EXPECT_EQ(0, run({"run", "s", "--last-failed"})) << m_output.toStdString();
    EXPECT_EQ("tst_b tst_d", cases());
    EXPECT_EQ(5, run({"run", "s", "--last-failed"})) << m_output.toStdString();

    // Of two suites with one name and of cases that are repeated, each counts by itself.
    write("other/s/tst_a/test.js", fails);
    EXPECT_EQ(1, run({"run", "s", "other/s", "--repeat-each", "2"}));
    EXPECT_EQ(1, run({"run", "s", "other/s", "--last-failed"}));
    EXPECT_EQ(1, report().cases.size());
}

TEST_F(RunReports, AFolderHasOneRunAtATime)
{
    write("s/tst_a/test.js", "function main() { test.log('pid 1'); for (;;); }\n");
    QProcess process;
    start(&process, {"run", "s"});
    ASSERT_EQ(1, loggedPid());
    EXPECT_EQ(4, run({"run", "s"}));
    EXPECT_EQ(
        0, m_output.indexOf(QStringLiteral("torvixrunner: The output folder 'results' is in use by another "
                                           "run: process %1 on ")
                                .arg(process.processId())))
        << m_output.toStdString();
    EXPECT_TRUE(m_output.contains(", which tests s; wait for its end, or choose another with --output\n"))
        << m_output.toStdString();
    process.kill();
    ASSERT_TRUE(process.waitForFinished());
    write("s/tst_a/test.js", "function main() {}\n");
    EXPECT_EQ(0, run({"run", "s"})) << m_output.toStdString();
}

TEST_F(RunReports, AFolderThatVanishesFailsTheRun)
{
    write("s/tst_a/test.js", "function main() {\n  test.log('pid 1');\n  for (;;) {\n    snooze(0.02);\n"
                             "    try { source('go.js'); return; } catch (e) {}\n  }\n}\n");
    write("s/tst_b/test.js", "function main() {}\n");
    QProcess process;
    start(&process, {"run", "s", "--reporter", "junit:out.xml", "--reporter", "tap"});
    ASSERT_EQ(1, loggedPid());
    QDir(path("results")).removeRecursively();
    write("s/tst_a/go.js", "");
    ASSERT_TRUE(process.waitForFinished(60'000));
    m_output = QString::fromUtf8(process.readAll());
    EXPECT_EQ(3, process.exitCode());
    EXPECT_EQ(1,
              m_output.count("torvixrunner: The output folder 'results' was removed or replaced during the "
                             "run: its results will be lost, all but what is printed here and what reports "
                             "lie elsewhere\n"))
        << m_output.toStdString();
    EXPECT_TRUE(m_output.contains("2 passed in ")) << m_output.toStdString();
    EXPECT_FALSE(m_output.contains("Report: ")) << m_output.toStdString();
    EXPECT_TRUE(content("out.xml").contains("tests=\"2\""));
    EXPECT_FALSE(QFile::exists(path("results/index.html")));
}

TEST_F(RunReports, AFullDiskIsToldForEachThatNeedsRoom)
{
    write("s/tst_a/test.js",
          "function main() { for (let i = 0; i < 9; ++i) test.fail(`${i}` + 'x'.repeat(4000)); }\n");
    EXPECT_EQ(1, run({"run", "s"}));
    QProcess process;
    process.setWorkingDirectory(m_folder.path());
    process.setProcessChannelMode(QProcess::MergedChannels);
    // A limit for the size of files, in blocks of 512 bytes, fails a write as a full disk does.
    process.start("/bin/sh",
                  {"-c",
                   "ulimit -f 32; trap '' XFSZ; exec \"$0\" report results/results.ndjson --reporter "
                   "junit:a.xml --reporter json:b.json --reporter tap:c.tap",
                   TORVIX_RUNNER});
    ASSERT_TRUE(process.waitForFinished(60'000));
    m_output = QString::fromUtf8(process.readAll());
    EXPECT_EQ(3, process.exitCode()) << m_output.toStdString();
    EXPECT_EQ("torvixrunner: The report 'a.xml' cannot be written: File too large\n"
              "torvixrunner: The report 'b.json' cannot be written: File too large\n" +
                  path("c.tap") + "\n",
              m_output);
    EXPECT_EQ(QStringList{"c.tap"}, QDir(m_folder.path()).entryList({"a.xml*", "b.json*", "c.tap*"}))
        << "a report is there as a whole or not at all";
}

TEST_F(RunReports, ForGitHubAndColours)
{
    write("s/tst_a/test.js",
          "function main() { test.fail('a * <b>'); test.compare('one\\ntwo', 'one\\nthree'); }\n");
    write("summary.md", "before\n");
    const QString summary = "GITHUB_STEP_SUMMARY=" + path("summary.md");
    EXPECT_EQ(1, runApart({"run", "s"}, {summary, "GITHUB_ACTIONS=true", "FORCE_COLOR=1", "NO_COLOR=1"}));
    EXPECT_TRUE(m_output.contains("\x1b[31m")) << m_output.toStdString();
    EXPECT_TRUE(m_output.contains("::error file=s/tst_a/test.js,line=1,title=s/tst_a::a * <b>\n"))
        << m_output.toStdString();
    const QString markdown = QString::fromUtf8(content("summary.md"));
    EXPECT_TRUE(markdown.startsWith("before\n### ")) << markdown.toStdString();
    EXPECT_TRUE(markdown.contains("a \\* \\<b\\>  \nat s/tst\\_a/test\\.js:1\n")) << markdown.toStdString();
    EXPECT_TRUE(markdown.contains(
        "```\nThe texts are not equal (- expected, + seen)\n```\n\n```diff\n  one\n- three\n+ two\n```\n"))
        << markdown.toStdString();
    EXPECT_EQ(1, runApart({"run", "s"}, {"FORCE_COLOR=0"}));
    EXPECT_FALSE(m_output.contains("\x1b["));
    EXPECT_EQ(1, runApart({"run", "s"}, {"GITHUB_STEP_SUMMARY=/proc/none"})) << "it is an extra";
    EXPECT_TRUE(m_errors.contains("GITHUB_STEP_SUMMARY=/proc/none cannot be written"))
        << m_errors.toStdString();
    // The annotations are no part of a report on the standard output.
    EXPECT_EQ(1, runApart({"run", "s", "--reporter", "json:-"}, {"GITHUB_ACTIONS=true"}));
    EXPECT_TRUE(QJsonDocument::fromJson(m_output.toUtf8()).isObject()) << m_output.toStdString();
    EXPECT_TRUE(m_errors.contains("::error ")) << m_errors.toStdString();
}

TEST_F(RunReports, FlakyCasesFailTheRunWhereThatIsWanted)
{
    write("s/tst_a/test.js", "function main() {\n  try { source('mark.js'); } catch (e) {\n"
                             "    try { startApplication('/usr/bin/touch mark.js'); } catch (noQtProgram) "
                             "{}\n    test.fail('no');\n"
                             "  }\n}\n");
    EXPECT_EQ(1, run({"run", "s", "--retries", "1", "--fail-on-flaky-tests"})) << m_output.toStdString();
    EXPECT_TRUE(m_output.contains("1 passed, 1 flaky in ")) << m_output.toStdString();
    EXPECT_EQ(0, run({"run", "s", "--retries", "1", "--fail-on-flaky-tests"}));
}

TEST_F(RunReports, JUnitTellsRetriesPicturesAndErrorsAsBuildServersReadThem)
{
    write("one/s/tst_a/data.txt", "x");
    write("one/s/tst_a/test.js",
          "function main() {\n  test.fail('a check');\n  test.attachFile('data.txt');\n"
          "  throw new Error('thrown');\n}\n");
    write("two/s/tst_a/test.js", "function main() {}\n");
    EXPECT_EQ(1, run({"run", "one/s", "two/s", "--retries", "1", "--reporter", "junit:out.xml"}));
    QXmlStreamReader xml(content("out.xml"));
    QStringList seen;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes attributes = xml.attributes();
        if (xml.name() == "system-out") {
            const QString text = xml.readElementText();
            if (text.contains("[["))
                seen += text.mid(text.indexOf("[["));
        } else if (xml.name() != "property" && xml.name() != "properties") {
            seen +=
                QStringList{xml.name().toString(), attributes.value("name").toString(),
                            attributes.value("classname").toString(), attributes.value("message").toString()}
                    .join('|');
        }
    }
    const QStringList expected = {"testsuites|s||",
                                  "testsuite|one/s||",
                                  "testcase|tst_a|one/s|",
                                  "error|||thrown",
                                  "rerunError|||thrown",
                                  "stackTrace|||",
                                  "[[ATTACHMENT|results/tst_a/data-2.txt]]",
                                  "testsuite|two/s||",
                                  "testcase|tst_a|two/s|"};
    EXPECT_EQ(expected.join('\n').toStdString(), seen.join('\n').toStdString());
}

} // namespace
