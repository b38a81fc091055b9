#include "support/runreport.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using namespace Torvix;

/** Runs suites of examples/ and reads what came of it. */
class Examples : public testing::Test
{
protected:
    int run(const QStringList& suites)
    {
        QStringList arguments{"run", "--output", m_folder.path()};
        for (const QString& suite : suites)
            arguments += QDir(QStringLiteral(TORVIX_EXAMPLES)).absoluteFilePath(suite);
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QStringLiteral(TORVIX_RUNNER), arguments);
        EXPECT_TRUE(process.waitForFinished(100'000));
        m_output = process.readAll().toStdString();
        m_report = readReportFile(m_folder.filePath("results.ndjson"));
        EXPECT_FALSE(m_report.cases.isEmpty()) << m_output;
        return process.exitCode();
    }

    /** How many passed checks a test case has reported. */
    int passes(const QString& testCase) const
    {
        int count = 0;
        for (const CaseReport& each : m_report.cases) {
            if (each.name != testCase)
                continue;
            for (const ResultEntry& entry : each.attempts.last().entries)
                count += entry.type == ResultType::Pass;
        }
        return count;
    }

    QTemporaryDir m_folder;
    std::string m_output;
    RunReport m_report;
};

TEST_F(Examples, ThatDemoRunsPass)
{
    ASSERT_EQ(0, run({"suite_calculator", "suite_addressbook"})) << m_output;
    EXPECT_EQ(m_report.cases.size(), m_report.count(CaseOutcome::Passed));
    // A table that was not read would give test cases without checks.
    EXPECT_EQ(10, passes("tst_sums")) << "a check for each line of sums.csv";
    EXPECT_EQ(4, passes("tst_contacts")) << "a check for each tab";
    EXPECT_EQ(4, passes("tst_sorting"));
    for (const CaseReport& each : m_report.cases) {
        const AttemptReport& attempt = each.attempts.last();
        ASSERT_EQ(1, attempt.applications.size()) << each.name.toStdString();
        EXPECT_EQ("ended with the test case", attempt.applications[0].ending) << each.name.toStdString();
    }
}

TEST_F(Examples, ThatFailOnPurposeFailInJustThatManner)
{
    EXPECT_EQ(1, run({"suite_failing"})) << m_output;
    ASSERT_EQ(2, m_report.cases.size()) << m_output;

    const AttemptReport& missing = m_report.cases[0].attempts.last();
    EXPECT_EQ("tst_missing_object", m_report.cases[0].name);
    EXPECT_EQ(CaseOutcome::Error, missing.outcome);
    ASSERT_TRUE(missing.firstFailure());
    const std::string message = missing.firstFailure()->message.toStdString();
    EXPECT_NE(std::string::npos, message.find("Clear Everything")) << message;
    EXPECT_NE(std::string::npos, message.find("The closest is Button with text 'Clear':")) << message;
    EXPECT_EQ(5, missing.firstFailure()->line);
    EXPECT_TRUE(missing.objectTree.contains("Clear All")) << "the tree shows what there is instead";
    ASSERT_LE(2, missing.entries.size());
    EXPECT_TRUE(missing.entries[1].message.startsWith("Whatever happened")) << "cleanup() was called";
    EXPECT_EQ(1, missing.entries.last().attachments.size()) << "the picture of the screen";

    const AttemptReport& wrong = m_report.cases[1].attempts.last();
    EXPECT_EQ(CaseOutcome::Failed, wrong.outcome);
    ASSERT_EQ(3, wrong.entries.size()) << m_output;
    const ResultEntry& failure = wrong.entries[0];
    EXPECT_EQ(ResultType::Fail, failure.type);
    EXPECT_EQ("wrong on purpose: it is 42", failure.message);
    EXPECT_EQ("- 43\n+ 42", failure.difference) << m_output;
    EXPECT_EQ(QStringList{"6 times 7"}, failure.sections);
    EXPECT_TRUE(failure.file.endsWith("suite_failing/tst_wrong_result/test.js"));
    EXPECT_EQ(8, failure.line);
    EXPECT_TRUE(failure.source.lines.join('\n').contains("\"43\""));
    EXPECT_EQ(ResultType::Log, wrong.entries[1].type) << "the test case went on";
}

/** The user guide, and the files that it lets a newcomer write. */
class UserGuide
{
public:
    UserGuide()
    {
        QFile file(QStringLiteral(TORVIX_USER_GUIDE));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        m_text = QString::fromUtf8(file.readAll());
    }

    /** The block of code that follows the first mention of a file. */
    QByteArray contents(const QString& file) const
    {
        const int start = m_text.indexOf("\n```", m_text.indexOf('`' + file + '`'));
        const int first = m_text.indexOf('\n', start + 1) + 1;
        return m_text.mid(first, m_text.indexOf("```", first) - first).toUtf8();
    }

    /** The program that it makes a suite for. */
    QString program() const
    {
        return QRegularExpression("torvixrunner init suite_mine (/\\S+)").match(m_text).captured(1);
    }

private:
    QString m_text;
};

TEST_F(Examples, TheUserGuideLeadsToTestsThatPass)
{
    const UserGuide guide;
    const QString suite = m_folder.filePath("suite_mine");
    for (const QStringList& arguments :
         {QStringList{"init", suite, guide.program()}, QStringList{"init", suite + "/tst_second"}})
        ASSERT_EQ(0, QProcess::execute(QStringLiteral(TORVIX_RUNNER), arguments));
    ASSERT_TRUE(QDir(suite).mkpath("shared/testdata"));
    for (const QString file : {"shared/scripts/names.js", "tst_first/test.js", "shared/scripts/calculator.js",
                               "shared/testdata/sums.csv", "tst_second/test.js"}) {
        QFile written(suite + '/' + file);
        ASSERT_TRUE(written.open(QIODevice::WriteOnly));
        written.write(guide.contents("suite_mine/" + file));
    }
    EXPECT_EQ(0, run({suite})) << m_output;
    EXPECT_EQ(1, passes("tst_first")) << m_output;
    EXPECT_EQ(2, passes("tst_second")) << m_output;
}

} // namespace
