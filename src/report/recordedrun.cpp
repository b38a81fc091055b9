#include "report/recordedrun.h"

#include <QDir>
#include <QHash>
#include <QIODevice>
#include <QJsonDocument>
#include <QSet>
#include <QTemporaryFile>

#include <algorithm>
#include <iterator>

namespace Torvix {

namespace {

/** A line is held in memory, and is no event when it is longer. */
constexpr int maxLineBytes = 256 * 1024 * 1024;
constexpr int maxProblems = 20;

/** The lines of a stream with their places. */
class LineReader
{
public:
    LineReader(QIODevice* stream, qint64 begin) : m_stream(stream), m_end(begin) { m_stream->seek(begin); }

    /** False at the end of the stream. */
    bool read()
    {
        m_begin = m_end;
        m_isTooLong = false;
        next();
        while (m_lineBytes == maxLineBytes && !line().endsWith('\n')) {
            m_isTooLong = true;
            next(); // of the line's parts, only the last is kept
        }
        return m_end > m_begin;
    }

    QByteArray line() const { return QByteArray::fromRawData(m_buffer.constData() + m_start, m_lineBytes); }
    /** Empty when the line is none. */
    QJsonObject event(QJsonParseError* error = nullptr) const
    {
        return QJsonDocument::fromJson(line(), error).object();
    }
    bool isTooLong() const { return m_isTooLong; }
    qint64 begin() const { return m_begin; }
    qint64 end() const { return m_end; }

private:
    /** Goes on behind what was the line. */
    void next()
    {
        m_start += m_lineBytes;
        m_lineBytes = lengthOfLine();
        m_end += m_lineBytes;
    }

    /** Of the line at m_start; the buffer is filled as far as it needs. */
    int lengthOfLine()
    {
        for (int searched = m_start;;) {
            const int at = m_buffer.indexOf('\n', searched);
            if (at >= 0)
                return qMin(at + 1 - m_start, maxLineBytes);
            m_buffer.remove(0, m_start);
            m_start = 0;
            searched = m_buffer.size();
            const QByteArray more = searched < maxLineBytes ? m_stream->read(pieceBytes) : QByteArray();
            if (more.isEmpty())
                return qMin(searched, maxLineBytes);
            m_buffer += more;
        }
    }

    static constexpr int pieceBytes = 256 * 1024;

    QIODevice* m_stream;
    QByteArray m_buffer;
    int m_start = 0; ///< of the line in the buffer
    int m_lineBytes = 0;
    qint64 m_begin = 0;
    qint64 m_end;
    bool m_isTooLong = false;
};

QString suiteFolder(const CaseSummary& testCase)
{
    return testCase.path.section(QLatin1Char('/'), 0, -2);
}

/** Reads one stream from its start and adds what it tells to a summary. */
class Indexer : private EventVisitor
{
public:
    Indexer(RunSummary* run, int stream) : m_run(*run), m_stream(stream), m_firstCase(run->cases.size()) {}

    /** False when it tells of no run. */
    bool read(QIODevice* stream)
    {
        LineReader lines(stream, 0);
        for (m_line = 1; lines.read(); ++m_line)
            readLine(lines);
        if (m_problems > maxProblems)
            m_run.problems += QStringLiteral("%1 more lines cannot be read").arg(m_problems - maxProblems);
        endPart();
        return m_started.isValid() || m_run.cases.size() > m_firstCase;
    }

private:
    void readLine(const LineReader& lines)
    {
        if (lines.isTooLong())
            return problem(QStringLiteral("longer than %1 MB").arg(maxLineBytes / 1024 / 1024));
        if (lines.line().trimmed().isEmpty())
            return;
        QJsonParseError error;
        const QJsonObject event = lines.event(&error);
        if (event.isEmpty())
            return problem(lines.line().endsWith('\n') ? error.errorString()
                                                       : QStringLiteral("cut off before its end"));
        m_begin = lines.begin();
        m_end = lines.end();
        if (!add(event))
            problem(QStringLiteral("unexpected event '%1'").arg(event["event"].toString()));
    }

    void problem(const QString& text)
    {
        if (++m_problems <= maxProblems)
            m_run.problems += QStringLiteral("line %1: %2").arg(m_line).arg(text);
    }

    /** False when the event is not known or does not fit here. */
    bool add(const QJsonObject& event)
    {
        const QDateTime time = eventTime(event);
        if (time.isValid())
            m_lastTime = time;
        struct RunEvent
        {
            const char* name;
            bool (Indexer::*read)(const QJsonObject&);
        };
        static constexpr RunEvent runEvents[] = {{"run-started", &Indexer::runStarted},
                                                 {"case-started", &Indexer::caseStarted},
                                                 {"case-ended", &Indexer::caseEnded},
                                                 {"run-ended", &Indexer::runEnded}};
        const QString name = event["event"].toString();
        const auto row =
            std::find_if(std::begin(runEvents), std::end(runEvents),
                         [&name](const RunEvent& each) { return name == QLatin1String(each.name); });
        if (row != std::end(runEvents))
            return (this->*row->read)(event);
        if (!m_attempt || !visitEvent(event, QDir(), *this))
            return false;
        m_attempt->events.end = m_end;
        // Until its end says it.
        m_attempt->durationMs = qMax<qint64>(0, m_attempt->started.msecsTo(m_lastTime));
        return true;
    }

    bool runStarted(const QJsonObject& event)
    {
        m_started = m_lastTime;
        m_run.plannedCases += event["plannedCases"].toInt();
        if (m_stream > 0)
            return true;
        m_run.name = event["name"].toString();
        m_run.environment = event["environment"].toObject();
        return true;
    }

    bool caseStarted(const QJsonObject& event)
    {
        CaseSummary testCase;
        testCase.suite = event["suite"].toString();
        testCase.name = event["name"].toString();
        testCase.path = event["path"].toString();
        testCase.tags = stringsFromJson(event["tags"]);
        // A retry follows its case at once or after others: it belongs to the last entry of that name, of
        // which there are several when cases are repeated.
        int known = -1;
        if (event["attempt"].toInt(1) > 1)
            known = lastOf(testCase);
        if (known < 0) {
            known = m_run.cases.size();
            m_run.cases += testCase;
        }
        m_run.cases[known].attempts += AttemptSummary();
        m_attempt = &m_run.cases[known].attempts.last();
        m_attempt->started = m_lastTime;
        m_attempt->events = {m_stream, m_end, m_end};
        m_firstError = -1;
        return true;
    }

    /** -1 when this stream has none. */
    int lastOf(const CaseSummary& testCase) const
    {
        int index = m_run.cases.size() - 1;
        const auto isSame = [&](const CaseSummary& each) {
            return each.path == testCase.path && each.suite == testCase.suite && each.name == testCase.name;
        };
        while (index >= m_firstCase && !isSame(m_run.cases[index]))
            --index;
        return index >= m_firstCase ? index : -1;
    }

    bool caseEnded(const QJsonObject& event)
    {
        if (!m_attempt)
            return false;
        m_attempt->outcome = caseOutcomeFromName(event["outcome"].toString());
        m_attempt->durationMs = qint64(event["durationMs"].toDouble());
        if (m_attempt->outcome == CaseOutcome::Error && m_firstError >= 0)
            m_attempt->decisiveResult = m_firstError;
        m_attempt = nullptr;
        return true;
    }

    bool runEnded(const QJsonObject& event)
    {
        m_complete = true;
        m_durationMs = qint64(event["durationMs"].toDouble());
        m_run.interrupted = m_run.interrupted || event["interrupted"].toBool();
        return true;
    }

    void result(const ResultEntry& entry) override
    {
        ++m_attempt->entryCount;
        m_attempt->attachmentCount += entry.attachments.size();
        addText(entry.message);
        addText(entry.detail);
        addText(entry.difference);
        if (!isFailure(entry.type))
            return;
        if (m_attempt->decisiveResult < 0)
            m_attempt->decisiveResult = m_begin;
        if (entry.type == ResultType::Error && m_firstError < 0)
            m_firstError = m_begin;
    }

    void applicationEnded(const ApplicationReport& application) override { addText(application.output); }
    void objectTree(const QString& text) override { addText(text); }

    void addText(const QString& text)
    {
        m_attempt->textLength += text.size();
        m_run.texts.add(text.size());
    }

    void endPart()
    {
        // Without an end it lasted as far as the stream tells.
        if (!m_complete && m_started.isValid() && m_lastTime.isValid())
            m_durationMs = qMax<qint64>(0, m_started.msecsTo(m_lastTime));
        const bool isFirst = m_stream == 0;
        m_run.complete = m_complete && (isFirst || m_run.complete);
        // Parts run side by side, so the whole lasts as long as the slowest.
        m_run.durationMs = isFirst ? m_durationMs : qMax(m_run.durationMs, m_durationMs);
        if (isFirst || m_started < m_run.started)
            m_run.started = m_started;
    }

    RunSummary& m_run;
    int m_stream;
    int m_firstCase; ///< of this stream
    int m_line = 0;
    int m_problems = 0;
    qint64 m_begin = 0;
    qint64 m_end = 0;
    QDateTime m_started;
    QDateTime m_lastTime;
    qint64 m_durationMs = 0;
    bool m_complete = false;
    AttemptSummary* m_attempt = nullptr;
    qint64 m_firstError = -1;
};

/** How many of a path's last parts are needed to tell the paths apart. */
int distinguishingParts(const QStringList& paths)
{
    for (int parts = 1;; ++parts) {
        QSet<QString> seen;
        bool isWhole = true;
        for (const QString& path : paths) {
            seen += path.section(QLatin1Char('/'), -parts, -1);
            isWhole = isWhole && path.count(QLatin1Char('/')) < parts;
        }
        if (seen.size() == paths.size() || isWhole)
            return parts;
    }
}

/**
 * Suites of one name from several folders get titles that tell them apart. Shards of one suite may lie in
 * different folders, each on its machine: only a stream that has several folders makes them several suites.
 */
void nameSuites(RunSummary* run)
{
    QHash<QString, QStringList> folders; // of each name
    QHash<QString, QSet<QString>> inOneStream;
    QSet<QString> severalInOne;
    int stream = -1;
    for (const CaseSummary& testCase : run->cases) {
        const int of = testCase.lastAttempt().events.stream;
        if (of != stream)
            inOneStream.clear();
        stream = of;
        const QString folder = suiteFolder(testCase);
        QStringList& known = folders[testCase.suite];
        if (!known.contains(folder))
            known += folder;
        QSet<QString>& here = inOneStream[testCase.suite];
        here += folder;
        if (here.size() > 1)
            severalInOne += testCase.suite;
    }
    QHash<QString, int> parts;
    for (const QString& name : severalInOne)
        parts[name] = distinguishingParts(folders[name]);
    for (CaseSummary& testCase : run->cases) {
        const int count = parts.value(testCase.suite);
        testCase.suiteTitle =
            count > 0 ? suiteFolder(testCase).section(QLatin1Char('/'), -count, -1) : testCase.suite;
    }
}

/** Null with the reason in `*error`. */
std::unique_ptr<QIODevice> seekable(std::unique_ptr<QIODevice> stream, QString* error)
{
    if (!stream->isSequential())
        return stream;
    auto copy = std::make_unique<QTemporaryFile>();
    bool isCopied = copy->open();
    constexpr qint64 chunkBytes = 1024 * 1024;
    for (QByteArray chunk = stream->read(chunkBytes); isCopied && !chunk.isEmpty();
         chunk = stream->read(chunkBytes))
        isCopied = copy->write(chunk) == chunk.size();
    if (isCopied && copy->flush())
        return copy;
    *error = QStringLiteral("it cannot be kept in a temporary file: %1").arg(copy->errorString());
    return nullptr;
}

} // namespace

struct RecordedRun::Stream
{
    std::unique_ptr<QIODevice> device;
    QDir folder;
};

RecordedRun::RecordedRun() = default;
RecordedRun::~RecordedRun() = default;
RecordedRun::RecordedRun(RecordedRun&&) noexcept = default;
RecordedRun& RecordedRun::operator=(RecordedRun&&) noexcept = default;

bool RecordedRun::add(std::unique_ptr<QIODevice> stream, const QString& folder, QString* error)
{
    stream = seekable(std::move(stream), error);
    if (!stream)
        return false;
    const bool isRun = Indexer(&m_summary, int(m_streams.size())).read(stream.get());
    nameSuites(&m_summary);
    m_streams.push_back({std::move(stream), QDir(folder)});
    if (!isRun)
        *error = QStringLiteral("no run is told of in it");
    return isRun;
}

void RecordedRun::visit(const AttemptSummary& attempt, EventVisitor& visitor) const
{
    const Stream& stream = m_streams[std::size_t(attempt.events.stream)];
    LineReader lines(stream.device.get(), attempt.events.begin);
    while (lines.end() < attempt.events.end && lines.read())
        visitEvent(lines.event(), stream.folder, visitor);
}

std::optional<ResultEntry> RecordedRun::decisiveFailure(const AttemptSummary& attempt) const
{
    struct Keeper : EventVisitor
    {
        void result(const ResultEntry& entry) override { kept = entry; }
        std::optional<ResultEntry> kept;
    } keeper;
    if (attempt.decisiveResult < 0)
        return {};
    const Stream& stream = m_streams[std::size_t(attempt.events.stream)];
    LineReader lines(stream.device.get(), attempt.decisiveResult);
    if (lines.read())
        visitEvent(lines.event(), stream.folder, keeper);
    return keeper.kept;
}

} // namespace Torvix
