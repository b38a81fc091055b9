#include "report/reporters.h"

#include "samplerun.h"

#include <QFile>
#include <QRandomGenerator>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace Torvix;

struct Baseline
{
    const char* file;
    const char* reporter;
    ReporterOptions options;
};

void PrintTo(const Baseline& baseline, std::ostream* out)
{
    *out << baseline.file;
}

class ApprovedReports : public testing::TestWithParam<Baseline>
{
};

/** To approve a change: TORVIX_APPROVE=1 ctest -R ApprovedReports, then read the difference in git. */
TEST_P(ApprovedReports, AreWhatWasApproved)
{
    const Reporter* reporter = reporterByName(GetParam().reporter);
    ASSERT_TRUE(reporter);
    const QByteArray seen = reporter->render(readReport(sampleStream()), GetParam().options);
    QFile approved(QStringLiteral(TORVIX_TEST_SOURCE_DIR "/approved/") + GetParam().file);
    if (qEnvironmentVariableIsSet("TORVIX_APPROVE")) {
        ASSERT_TRUE(approved.open(QIODevice::WriteOnly));
        ASSERT_EQ(seen.size(), approved.write(seen));
        return;
    }
    ASSERT_TRUE(approved.open(QIODevice::ReadOnly)) << "not approved yet";
    EXPECT_EQ(approved.readAll().toStdString(), seen.toStdString());
}

const QString tests = QStringLiteral("/tests");

INSTANTIATE_TEST_SUITE_P(EveryFormat, ApprovedReports,
                         testing::Values(Baseline{"index.html", "html", {false, tests, false}},
                                         Baseline{"junit.xml", "junit", {false, tests, false}},
                                         Baseline{"junit-strict.xml", "junit", {true, tests, false}},
                                         Baseline{"report.json", "json", {}},
                                         Baseline{"report.tap", "tap", {}},
                                         Baseline{"annotations.txt", "github", {false, tests, false}},
                                         Baseline{"summary.txt", "summary", {false, tests, false}},
                                         Baseline{"summary-colour.txt", "summary", {false, {}, true}}),
                         [](const auto& each) {
                             std::string name;
                             for (const char c : std::string(each.param.file))
                                 name += isalnum(static_cast<unsigned char>(c)) ? c : '_';
                             return name;
                         });

TEST(Reports, OfHardTextsStayWellFormed)
{
    RunReport report = readReport(sampleStream());
    QString hostile;
    for (int c = 0; c < 0x300; ++c)
        hostile += QChar(c);
    hostile += QChar(0xd800);
    hostile += QChar(0xfffe);
    hostile += QString::fromUtf8("\xf0\x9f\x90\x9e]]>");
    report.cases[1].name = hostile;
    report.cases[1].attempts[0].entries[0].message = hostile;
    report.environment[hostile] = hostile;
    QXmlStreamReader xml(renderJUnit(report, {}));
    QString texts;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.name() == "testcase" && xml.isStartElement())
            texts += xml.attributes().value("name");
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    EXPECT_TRUE(texts.contains(QString::fromUtf8("\xf0\x9f\x90\x9e]]>")));
    EXPECT_FALSE(renderHtml(report, {}).contains("<admin>"));
}

/** 500 cases with many steps and talkative applications, in texts that compress badly. */
RunReport largeRun(const std::function<bool(int)>& fails)
{
    RunReport large = readReport(sampleStream());
    const AttemptReport model = large.cases.at(1).attempts.at(0);
    large.cases.clear();
    QRandomGenerator random(1);
    for (int i = 0; i < 500; ++i) {
        AttemptReport attempt;
        attempt.outcome = fails(i) ? CaseOutcome::Failed : CaseOutcome::Passed;
        ResultEntry entry = model.entries.at(0);
        entry.attachments.clear();
        for (int j = 0; j < 50; ++j) {
            entry.type = fails(i) && j % 25 == 24 ? ResultType::Fail : ResultType::Pass;
            entry.message = QStringLiteral("Comparison %1").arg(random.generate());
            attempt.entries += entry;
        }
        ApplicationReport chatty;
        for (int j = 0; j < 100; ++j)
            chatty.output += QStringLiteral("%1 took %2 ms\n").arg(random.generate()).arg(random.generate());
        attempt.applications += chatty;
        large.cases += CaseReport{"suite", QStringLiteral("tst_%1").arg(i), {}, {"tag"}, {attempt}};
    }
    return large;
}

TEST(Reports, OfFiveHundredCasesFitOnOnePage)
{
    const QByteArray few = renderHtml(largeRun([](int i) { return i % 100 == 7; }), {});
    EXPECT_LT(few.size(), 2'000'000);
    EXPECT_EQ(500, few.count("<details class=\"case\""));
    EXPECT_EQ(5, few.count(" open>")) << "what failed is in the page as it is, and open";
    EXPECT_TRUE(few.contains("Long texts are shortened here"));
    EXPECT_LT(renderHtml(largeRun([](int) { return true; }), {}).size(), 2'000'000);
}

TEST(Reports, ShowHugeAndControllingTextsInBounds)
{
    RunReport report = readReport(sampleStream());
    ResultEntry& entry = report.cases[1].attempts[0].entries[0];
    entry.message = QString(1'000'000, 'x');
    entry.detail = QStringLiteral("- a\n+ ") + QString(1'000'000, 'y');
    const QByteArray page = renderHtml(report, {});
    EXPECT_LT(page.size(), 100'000);
    EXPECT_TRUE(page.contains("[980000 characters left out]"));
    EXPECT_TRUE(page.contains("\xe2\x90\x81 done")) << "control characters are shown as their pictures";
    EXPECT_FALSE(page.contains('\x01'));
}

TEST(Reports, AreFoundByNameOnly)
{
    EXPECT_FALSE(reporterByName("JUnit"));
    EXPECT_FALSE(reporterByName(""));
    EXPECT_STREQ("report.tap", reporterByName("tap")->fileName);
}

TEST(Durations, AreReadable)
{
    EXPECT_EQ("0 ms", durationText(0));
    EXPECT_EQ("999 ms", durationText(999));
    EXPECT_EQ("1.0 s", durationText(1000));
    EXPECT_EQ("2 min 03 s", durationText(123'400));
    EXPECT_EQ("60 min 00 s", durationText(3'599'900));
}

} // namespace
