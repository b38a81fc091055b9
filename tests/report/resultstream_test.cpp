#include "samplerun.h"

#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using namespace Torvix;

RunReport reportOf(const QByteArray& stream)
{
    return wholeReport(recordedRun(stream));
}

TEST(ResultStream, WhatIsWrittenIsRead)
{
    QTemporaryDir folder;
    QFile file(folder.filePath("results.ndjson"));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ResultStreamWriter writer(&file);
    writer.runStarted("run", 1, {{"os", "any"}});
    CaseSummary testCase;
    testCase.suite = "suite";
    testCase.name = "tst_a";
    testCase.tags = QStringList{"x", "y"};
    writer.caseStarted(testCase, 1);
    ResultEntry entry;
    entry.type = ResultType::UnexpectedPass;
    entry.message = "line\nend \"quoted\" \\";
    entry.detail = "detail";
    entry.difference = "- a\n+ b";
    entry.file = "/a/test.js";
    entry.line = 7;
    entry.sections = QStringList{"outer", "inner"};
    entry.source = {6, {"a", "b"}};
    entry.attachments = {{folder.filePath("shot.png"), "image/png", "seen"}};
    writer.entry(entry);
    writer.applicationEnded({"app", 42, "exited with 1", "out\n"});
    writer.objectTree("tree");

    // Nothing waits in a buffer: another process that reads now sees every event so far.
    EXPECT_EQ(CaseOutcome::Interrupted, readReportFile(file.fileName()).cases.at(0).outcome());

    writer.caseEnded(CaseOutcome::Failed, 1234);
    writer.runEnded(false, 2000);
    const RunReport report = readReportFile(file.fileName());
    EXPECT_TRUE(report.complete);
    EXPECT_TRUE(report.problems.isEmpty());
    EXPECT_EQ("any", report.environment["os"].toString());
    const CaseReport& read = report.cases.at(0);
    EXPECT_EQ(testCase.tags, read.tags);
    const AttemptReport& attempt = read.attempts.at(0);
    EXPECT_EQ(1234, attempt.durationMs);
    EXPECT_EQ("tree", attempt.objectTree);
    EXPECT_EQ("exited with 1", attempt.applications.at(0).ending);
    EXPECT_EQ(42, attempt.applications.at(0).pid);
    const ResultEntry* failure = attempt.firstFailure();
    ASSERT_TRUE(failure);
    EXPECT_EQ(entry.message, failure->message);
    EXPECT_EQ(entry.difference, failure->difference);
    EXPECT_EQ(entry.sections, failure->sections);
    EXPECT_EQ(entry.source.lines, failure->source.lines);
    EXPECT_EQ(folder.filePath("shot.png"), failure->attachments.at(0).path);
    EXPECT_TRUE(failure->time.isValid());

    QProcess validator;
    validator.setProcessChannelMode(QProcess::MergedChannels);
    validator.start("/usr/bin/python3",
                    {TORVIX_TEST_SOURCE_DIR "/validate.py",
                     TORVIX_TEST_SOURCE_DIR "/../../docs/result-stream.schema.json", file.fileName()});
    ASSERT_TRUE(validator.waitForFinished());
    EXPECT_EQ(0, validator.exitCode()) << validator.readAll().toStdString();
}

TEST(ResultStream, EveryPlaceWhereItCanBeCutGivesAReport)
{
    const QByteArray whole = sampleStream();
    int cases = 0;
    for (int length = 0; length <= whole.size(); length += 7) {
        const RunReport report = reportOf(whole.left(length));
        ASSERT_LE(report.problems.size(), 1) << length;
        ASSERT_GE(report.cases.size(), cases) << length;
        cases = report.cases.size();
    }
    const RunReport cut = reportOf(whole.left(whole.indexOf("\"failed\"")));
    EXPECT_FALSE(cut.complete);
    EXPECT_EQ(CaseOutcome::Interrupted, cut.cases.at(1).outcome());
    EXPECT_EQ(2, cut.cases.at(1).attempts.at(0).entries.size());
    EXPECT_EQ("line 12: cut off before its end", cut.problems.at(0));
    EXPECT_EQ(700, cut.cases.at(1).attempts.at(0).durationMs) << "as far as the stream tells";
    EXPECT_EQ(1800, cut.durationMs);
}

TEST(ResultStream, ForeignLinesAreToldAndPassedOver)
{
    QByteArray stream = sampleStream();
    stream.insert(stream.indexOf('\n') + 1, "not json\n[1]\n\n{\"event\":\"result\",\"type\":\"pass\"}\n"
                                            "{\"event\":\"from-the-future\"}\n");
    const RunReport report = reportOf(stream);
    EXPECT_EQ(4, report.problems.size());
    EXPECT_EQ("line 5: unexpected event 'result'", report.problems.at(2));
    EXPECT_EQ(5, report.cases.size());
}

TEST(ResultStream, ARetryBelongsToItsCaseAlsoWhenOthersRanBetween)
{
    const RunReport report = reportOf(sampleStream());
    EXPECT_EQ(2, report.cases.at(2).attempts.size());
    EXPECT_TRUE(report.cases.at(2).isFlaky());
    EXPECT_EQ(1, report.flakyCount());
    EXPECT_EQ(1, report.count(CaseOutcome::Passed) - report.flakyCount());
    EXPECT_TRUE(report.failed());
}

TEST(ResultStream, PartsOfARunAreJoined)
{
    QByteArray second = sampleStream();
    second.replace("2026-03-01T10:00:00.000Z", "2026-03-01T09:59:55.000Z");
    second.replace("66000", "66001");
    second.replace("\"attempt\":2", "\"attempt\":3");
    RecordedRun run;
    QString error;
    for (const QByteArray& part :
         {sampleStream(), second, second.left(second.indexOf("{\"event\":\"run-ended"))}) {
        auto buffer = std::make_unique<QBuffer>();
        buffer->setData(part);
        buffer->open(QIODevice::ReadOnly);
        run.add(std::move(buffer), QStringLiteral("/results"), &error);
    }
    const RunSummary& whole = run.summary();
    EXPECT_EQ(15, whole.cases.size());
    EXPECT_EQ(18, whole.plannedCases);
    EXPECT_EQ(QTime(9, 59, 55), whole.started.time());
    EXPECT_EQ(70'000, whole.durationMs) << "that without an end lasted as far as it tells";
    EXPECT_TRUE(whole.interrupted);
    EXPECT_FALSE(whole.complete) << "one of them has no end";
    EXPECT_EQ(2, whole.cases.at(2).attempts.size()) << "a retry belongs to a case of its own part";
    EXPECT_EQ(2, wholeReport(run).cases.at(11).attempts.at(0).entries.size());
}

TEST(ResultStream, EveryTextComesBackAsItWasAndEveryTimeInUtc)
{
    QString all;
    for (ushort c = 0; c < 0x100; ++c)
        all += QChar(c);
    all += QStringLiteral("\u017b\u2028\ufeff\U0001f600");
    QBuffer stream;
    stream.open(QIODevice::ReadWrite);
    ResultStreamWriter writer(&stream);
    ResultEntry entry;
    entry.message = all;
    entry.detail = QString(QChar(0xd800)) + QLatin1String("half a pair");
    entry.sections = QStringList{all, QString()};
    entry.time = QDateTime(QDate(2031, 1, 2), QTime(1, 4, 5, 60), Qt::OffsetFromUTC, 2 * 3600);
    writer.entry(entry);
    ASSERT_EQ(1, stream.buffer().count('\n'));
    const QJsonObject read = QJsonDocument::fromJson(stream.buffer()).object();
    EXPECT_EQ(all, read["message"].toString());
    EXPECT_TRUE(read["detail"].toString().endsWith("half a pair"));
    EXPECT_EQ(entry.sections, read["sections"].toVariant().toStringList());
    EXPECT_EQ("2031-01-01T23:04:05.060Z", read["time"].toString());
}

TEST(ResultStream, AFullDiskIsToldOnceAndDoesNotEndTheRun)
{
    QFile full("/dev/full");
    ASSERT_TRUE(full.open(QIODevice::WriteOnly));
    ResultStreamWriter writer(&full);
    writer.runStarted("run", 1, {});
    EXPECT_NE("", writer.errorString().toStdString());
    const QString first = writer.errorString();
    writer.runEnded(false, 1);
    EXPECT_EQ(first, writer.errorString());
}

TEST(SourceExcerpts, ShowTheLinesAroundOne)
{
    QTemporaryDir folder;
    QFile file(folder.filePath("test.js"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("one\ntwo\r\nthree\nfour\nfive");
    file.close();
    const SourceExcerpt middle = readSourceExcerpt(file.fileName(), 3, 1);
    EXPECT_EQ(2, middle.firstLine);
    EXPECT_EQ((QStringList{"two", "three", "four"}), middle.lines);
    EXPECT_EQ((QStringList{"four", "five"}), readSourceExcerpt(file.fileName(), 5, 1).lines);
    EXPECT_EQ(0, readSourceExcerpt(file.fileName(), 6, 1).firstLine);
    EXPECT_EQ(0, readSourceExcerpt(file.fileName(), 0, 1).firstLine);
    EXPECT_EQ(0, readSourceExcerpt("/nowhere.js", 1, 1).firstLine);
}

} // namespace
