#include "samplerun.h"

#include "report/texts.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryFile>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <string>

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

/** A page without what is the same in all: its style and its script. */
QByteArray withoutFixedParts(QByteArray page)
{
    for (const QByteArray& element : {QByteArray("style>"), QByteArray("script>")}) {
        const int begin = page.indexOf('<' + element);
        const int end = page.indexOf("</" + element);
        if (begin >= 0 && end > begin)
            page.remove(begin, end - begin);
    }
    return page;
}

/** To approve a change: TORVIX_APPROVE=1 ctest -R ApprovedReports, then read the difference in git. */
TEST_P(ApprovedReports, AreWhatWasApproved)
{
    const QByteArray seen =
        withoutFixedParts(rendered(GetParam().reporter, recordedRun(sampleStream()), GetParam().options));
    QFile approved(QStringLiteral(TORVIX_TEST_SOURCE_DIR "/approved/") + GetParam().file);
    if (qEnvironmentVariableIsSet("TORVIX_APPROVE")) {
        ASSERT_TRUE(approved.open(QIODevice::WriteOnly));
        ASSERT_EQ(seen.size(), approved.write(seen));
        return;
    }
    ASSERT_TRUE(approved.open(QIODevice::ReadOnly)) << "not approved yet";
    EXPECT_EQ(approved.readAll().toStdString(), seen.toStdString());
}

ReporterOptions kept(bool strictJUnit = false)
{
    ReporterOptions options;
    options.strictJUnit = strictJUnit;
    options.baseFolder = QStringLiteral("/tests");
    options.reportFolder = QStringLiteral("/results");
    return options;
}

ReporterOptions terminal()
{
    ReporterOptions options;
    options.colour = true;
    return options;
}

INSTANTIATE_TEST_SUITE_P(
    EveryFormat, ApprovedReports,
    testing::Values(Baseline{"index.html", "html", kept()}, Baseline{"junit.xml", "junit", kept()},
                    Baseline{"junit-strict.xml", "junit", kept(true)},
                    Baseline{"report.json", "json", kept()}, Baseline{"report.tap", "tap", kept()},
                    Baseline{"annotations.txt", "github", kept()}, Baseline{"summary.md", "markdown", kept()},
                    Baseline{"summary.txt", "summary", kept()},
                    Baseline{"summary-colour.txt", "summary", terminal()}),
    [](const auto& each) {
        std::string name;
        for (const char c : std::string(each.param.file))
            name += isalnum(static_cast<unsigned char>(c)) ? c : '_';
        return name;
    });

void addCase(ResultStreamWriter& stream, const QString& name, CaseOutcome outcome,
             const QVector<ResultEntry>& entries, const QString& path = QStringLiteral("/suite/tst"))
{
    CaseSummary testCase;
    testCase.suite = QStringLiteral("suite");
    testCase.name = name;
    testCase.path = path;
    stream.caseStarted(testCase, 1);
    for (const ResultEntry& entry : entries)
        stream.entry(entry);
    stream.caseEnded(outcome, 10);
}

ResultEntry entryOf(ResultType type, const QString& message, const QString& detail = {})
{
    ResultEntry entry;
    entry.type = type;
    entry.message = message;
    entry.detail = detail;
    return entry;
}

TEST(Reports, OfHardTextsStayWellFormed)
{
    QString hostile;
    for (int c = 0; c < 0x300; ++c)
        hostile += QChar(c);
    hostile += QChar(0xd800);
    hostile += QChar(0xfffe);
    hostile += QString::fromUtf8("\xf0\x9f\x90\x9e]]>");
    const RecordedRun run = recordedRun(streamOf([&](ResultStreamWriter& stream) {
        stream.runStarted(hostile, 1, {{hostile, hostile}});
        addCase(stream, hostile, CaseOutcome::Failed, {entryOf(ResultType::Fail, hostile, hostile)});
    }));
    QXmlStreamReader xml(rendered("junit", run));
    QString texts;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.name() == "testcase" && xml.isStartElement())
            texts += xml.attributes().value("name");
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    EXPECT_TRUE(texts.contains(QString::fromUtf8("\xf0\x9f\x90\x9e]]>")));
    EXPECT_FALSE(rendered("html", recordedRun(sampleStream())).contains("<admin>"));
    const QJsonObject json = QJsonDocument::fromJson(rendered("json", run)).object();
    EXPECT_EQ(hostile.left(0x300), json["cases"][0]["name"].toString().left(0x300));
}

/** 500 cases with many steps and talkative applications, in texts that compress badly. */
RecordedRun largeRun(const std::function<bool(int)>& fails)
{
    QRandomGenerator random(1);
    return recordedRun(streamOf([&](ResultStreamWriter& stream) {
        for (int i = 0; i < 500; ++i) {
            CaseSummary testCase;
            testCase.suite = QStringLiteral("suite");
            testCase.name = QStringLiteral("tst_%1").arg(i);
            testCase.tags = QStringList{QStringLiteral("tag")};
            stream.caseStarted(testCase, 1);
            for (int j = 0; j < 50; ++j) {
                ResultEntry entry = entryOf(fails(i) && j % 25 == 24 ? ResultType::Fail : ResultType::Pass,
                                            QStringLiteral("Comparison %1").arg(random.generate()));
                entry.file = QStringLiteral("/tests/suite_shop/tst_basket/test.js");
                entry.line = 3;
                stream.entry(entry);
            }
            ApplicationReport chatty;
            for (int j = 0; j < 300; ++j)
                chatty.output +=
                    QStringLiteral("%1 took %2 ms\n").arg(random.generate()).arg(random.generate());
            stream.applicationEnded(chatty);
            stream.caseEnded(fails(i) ? CaseOutcome::Failed : CaseOutcome::Passed, 10);
        }
    }));
}

TEST(Reports, OfFiveHundredCasesFitOnOnePage)
{
    const QByteArray few = rendered("html", largeRun([](int i) { return i % 100 == 7; }));
    EXPECT_LT(few.size(), 2'000'000);
    EXPECT_EQ(500, few.count("<article class=\"case\""));
    EXPECT_EQ(5, few.count("<details open>")) << "what failed is in the page as it is, and open";
    EXPECT_TRUE(few.contains("Long texts are shortened here"));
    const QByteArray all = rendered("html", largeRun([](int) { return true; }));
    EXPECT_LT(all.size(), 2'000'000);
    EXPECT_EQ(20, all.count("<details open>"));
}

TEST(Reports, ShowHugeAndControllingTextsInBounds)
{
    ResultEntry entry = entryOf(ResultType::Fail, QString(1'000'000, 'x'));
    entry.difference = QStringLiteral("- a\n+ ") + QString(1'000'000, 'y');
    const QByteArray page = rendered("html", recordedRun(streamOf([&](ResultStreamWriter& stream) {
                                         addCase(stream, "\x01 done", CaseOutcome::Failed, {entry});
                                     })));
    EXPECT_LT(page.size(), 100'000);
    EXPECT_TRUE(page.contains("[980000 more characters are in the result stream]"));
    EXPECT_TRUE(page.contains("\xe2\x90\x81 done")) << "control characters are shown as their pictures";
    EXPECT_FALSE(page.contains('\x01'));
}

/** Counts what goes through it, and keeps nothing. */
class Sink : public QIODevice
{
public:
    Sink() { open(QIODevice::WriteOnly); }
    qint64 count = 0;

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char*, qint64 size) override
    {
        count += size;
        return size;
    }
};

qint64 peakMemoryBytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    status.open(QIODevice::ReadOnly);
    const QString text = QString::fromLatin1(status.readAll());
    return QRegularExpression(QStringLiteral("VmHWM:\\s+(\\d+) kB")).match(text).captured(1).toLongLong() *
           1024;
}

TEST(Reports, OfARunThatDoesNotFitIntoMemoryAreMadeInBounds)
{
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    constexpr int megabyte = 1'000'000;
    constexpr int entries = 100;
    ResultStreamWriter writer(&file);
    writer.runStarted(QStringLiteral("run"), 1, {});
    addCase(writer, QStringLiteral("tst_loud"), CaseOutcome::Failed,
            QVector<ResultEntry>(entries, entryOf(ResultType::Log, QString(megabyte, 'x'))) +
                QVector<ResultEntry>(2, entryOf(ResultType::Fail, QString(megabyte, 'y'))));
    writer.runEnded(false, 1);
    RecordedRun run;
    QString error;
    auto stream = std::make_unique<QFile>(file.fileName());
    ASSERT_TRUE(stream->open(QIODevice::ReadOnly));
    ASSERT_TRUE(run.add(std::move(stream), {}, &error));
    const qint64 before = peakMemoryBytes();
    for (const Reporter& reporter : reporters()) {
        Sink sink;
        reporter.write(run, {}, &sink);
        EXPECT_GT(sink.count, 0) << reporter.name;
        // Only the one that programs read has room for it.
        EXPECT_EQ(reporter.name == std::string("json"), sink.count > qint64(3) * megabyte) << reporter.name;
    }
    EXPECT_LT(peakMemoryBytes() - before, qint64(60) * megabyte);
}

TEST(Reports, ShareTheirRoomAmongTheTexts)
{
    TextLengths lengths;
    for (const int length : {0, 3, 10, 1000, 1000, 5000})
        lengths.add(length);
    for (const qint64 budget : {0, 5, 20, 100, 1000, 3000, 6000, 7012}) {
        const int limit = lengths.limitFor(budget);
        qint64 sum = 0;
        for (const int length : {0, 3, 10, 1000, 1000, 5000})
            sum += qMin(length, limit);
        EXPECT_LE(sum, budget);
        EXPECT_GE(2 * sum, budget - 10) << "and most of it is used";
    }
    EXPECT_GE(lengths.limitFor(7013), 5000);
    EXPECT_EQ(7013, lengths.totalFor(lengths.limitFor(7013)));
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
