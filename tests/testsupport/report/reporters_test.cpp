#include "testsupport/report/reporters.h"

#include "samplerun.h"

#include <QFile>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

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

TEST(Reports, OfFiveHundredCasesFitOnOnePage)
{
    const RunReport sample = readReport(sampleStream());
    RunReport large = sample;
    large.cases.clear();
    for (int i = 0; i < 500; ++i)
        large.cases += sample.cases[i % sample.cases.size()];
    for (CaseReport& testCase : large.cases) {
        ApplicationReport chatty;
        chatty.output = QString(20'000 / 500 * 60, 'x');
        testCase.attempts[0].applications = {chatty};
    }
    EXPECT_LT(renderHtml(large, {}).size(), 2'000'000);
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
