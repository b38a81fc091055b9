#include "testsupport/testresult.h"

#include "report/streamwriter.h"
#include "testsupport/attachments.h"
#include "testsupport/screen/videocapture.h"

#include <QDir>
#include <QFileInfo>

namespace Torvix {

TestResult::TestResult(ResultStreamWriter* stream, const QString& outputFolder)
    : m_stream(stream)
    , m_outputFolder(outputFolder)
{
}

TestResult::~TestResult() = default;

void TestResult::setVideoCapture(std::unique_ptr<VideoCapture> video)
{
    m_video = std::move(video);
}

std::unique_ptr<VideoCapture> TestResult::takeVideoCapture()
{
    return std::move(m_video);
}

void TestResult::add(ResultType type, const QString& message, const QString& detail, const LineInfo& place,
                     const QVector<Attachment>& attachments, const QString& difference)
{
    ++m_counts[std::size_t(type)];
    if (!m_stream)
        return;
    const LineInfo& at = m_fixedPlaces.empty() ? place : m_fixedPlaces.back();
    ResultEntry entry;
    entry.type = type;
    entry.time = QDateTime::currentDateTimeUtc();
    entry.message = message;
    entry.detail = detail;
    entry.difference = difference;
    entry.file = at.file;
    entry.line = at.line;
    entry.sections = m_sections;
    entry.attachments = attachments;
    if (isFailure(type))
        entry.source = readSourceExcerpt(at.file, at.line);
    m_stream->entry(entry);
}

CaseOutcome TestResult::outcome() const
{
    if (count(ResultType::Error) > 0)
        return CaseOutcome::Error;
    if (count(ResultType::Fail) + count(ResultType::UnexpectedPass) + count(ResultType::Fatal) > 0)
        return CaseOutcome::Failed;
    return count(ResultType::Skip) > 0 ? CaseOutcome::Skipped : CaseOutcome::Passed;
}

void TestResult::finish()
{
    const std::unique_ptr<VideoCapture> video = takeVideoCapture();
    QString error;
    if (!video)
        return;
    if (video->stop(&error))
        add(ResultType::Log, QStringLiteral("Video capture ended with the test case"), QString(), LineInfo(),
            {attachmentOf(video->file(), QStringLiteral("video of the test case"))});
    else
        add(ResultType::Warning, error, QString(), LineInfo());
}

int TestResult::checkCount() const
{
    return count(ResultType::Pass) + count(ResultType::Fail) + count(ResultType::ExpectedFail) +
           count(ResultType::UnexpectedPass) + count(ResultType::Fatal);
}

void TestResult::startSection(const QString& title)
{
    m_sections += title;
}

bool TestResult::endSection()
{
    if (m_sections.isEmpty())
        return false;
    m_sections.removeLast();
    return true;
}

bool TestResult::restorePlace()
{
    if (m_fixedPlaces.empty())
        return false;
    m_fixedPlaces.pop_back();
    return true;
}

QString TestResult::newOutputFile(const QString& name)
{
    if (m_outputFolder.isEmpty() || !QDir().mkpath(m_outputFolder))
        return {};
    const QDir folder(m_outputFolder);
    const QFileInfo wanted(name);
    QString file = wanted.fileName();
    for (int i = 2; folder.exists(file); ++i)
        file = QStringLiteral("%1-%2").arg(wanted.completeBaseName(), QString::number(i)) +
               (wanted.suffix().isEmpty() ? QString() : QLatin1Char('.') + wanted.suffix());
    return folder.absoluteFilePath(file);
}

} // namespace Torvix
