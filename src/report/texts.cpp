#include "report/texts.h"

#include "report/reporters.h"

#include <QDir>
#include <QIODevice>

namespace Torvix {

namespace {

/** So that no pair of surrogates is torn apart. */
int wholeCharacters(const QString& text, int length)
{
    return length > 0 && length < text.size() && text[length - 1].isHighSurrogate() ? length - 1 : length;
}

QString leftOut(qint64 count)
{
    return QStringLiteral("[%1 more characters are in the result stream]").arg(count);
}

} // namespace

QString durationText(qint64 durationMs)
{
    if (durationMs < 1000)
        return QStringLiteral("%1 ms").arg(durationMs);
    if (durationMs < 60'000)
        return QStringLiteral("%1 s").arg(double(durationMs) / 1000, 0, 'f', 1);
    const qint64 seconds = (durationMs + 500) / 1000;
    return QStringLiteral("%1 min %2 s").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

QString positionText(const QString& file, int line)
{
    return line > 0 ? file + QLatin1Char(':') + QString::number(line) : file;
}

QString relativeTo(const QString& folder, const QString& file)
{
    if (folder.isEmpty() || !QDir::isAbsolutePath(file))
        return file;
    const QString relative = QDir(folder).relativeFilePath(file);
    return relative.startsWith(QLatin1String("..")) ? file : relative;
}

QString cutEnd(const QString& text, int limit)
{
    if (text.size() <= limit)
        return text;
    const int kept = wholeCharacters(text, limit);
    return text.left(kept) + QLatin1Char('\n') + leftOut(text.size() - kept);
}

QString cutBegin(const QString& text, int limit)
{
    if (text.size() <= limit)
        return text;
    const int leftOutCount = wholeCharacters(text, text.size() - limit);
    return leftOut(leftOutCount) + QLatin1Char('\n') + text.mid(leftOutCount);
}

QString headline(const ResultEntry& entry)
{
    return entry.type == ResultType::UnexpectedPass
               ? QStringLiteral("Passed, although it was expected to fail: ") + entry.message
               : entry.message;
}

QString findings(const ResultEntry& entry)
{
    return entry.detail.isEmpty() || entry.difference.isEmpty()
               ? entry.detail + entry.difference
               : entry.detail + QLatin1Char('\n') + entry.difference;
}

QString countsText(const RunSummary& run)
{
    const struct
    {
        int count;
        const char* text;
    } rows[] = {{run.count(CaseOutcome::Passed), "passed"},
                {run.count(CaseOutcome::Failed), "failed"},
                {run.count(CaseOutcome::Error), "with errors"},
                {run.count(CaseOutcome::Skipped), "skipped"},
                {run.count(CaseOutcome::Interrupted), "interrupted"},
                {run.flakyCount(), "flaky"},
                {run.notRunCount(), "not run"}};
    QStringList counts;
    for (const auto& row : rows) {
        if (row.count > 0)
            counts += QStringLiteral("%1 %2").arg(QString::number(row.count), QLatin1String(row.text));
    }
    return counts.isEmpty() ? QStringLiteral("no test cases") : counts.join(QLatin1String(", "));
}

QString linkTo(const Attachment& attachment, const ReporterOptions& options)
{
    return options.reportFolder.isEmpty() ? attachment.path
                                          : QDir(options.reportFolder).relativeFilePath(attachment.path);
}

void BoundedText::addLine(const QString& text)
{
    const QString line = m_length == 0 ? text : QLatin1Char('\n') + text;
    m_length += line.size();
    const int half = m_limit / 2;
    const int toHead = m_tail.isEmpty() ? wholeCharacters(line, qMin(half - m_head.size(), line.size())) : 0;
    m_head += line.left(toHead);
    m_tail += line.mid(toHead);
    if (m_tail.size() > 2 * m_limit)
        m_tail = m_tail.right(half);
}

QString BoundedText::text() const
{
    if (m_length <= m_limit)
        return m_head + m_tail;
    const QString end = m_tail.mid(wholeCharacters(m_tail, m_tail.size() - m_limit / 2));
    return m_head + QLatin1Char('\n') + leftOut(m_length - m_head.size() - end.size()) + QLatin1Char('\n') +
           end;
}

TextOutput& TextOutput::operator<<(const QByteArray& utf8)
{
    constexpr int bufferBytes = 64 * 1024;
    m_buffer += utf8;
    if (m_buffer.size() >= bufferBytes)
        flush();
    return *this;
}

TextOutput& TextOutput::operator<<(const char* utf8)
{
    return *this << QByteArray::fromRawData(utf8, int(qstrlen(utf8)));
}

void TextOutput::flush()
{
    m_device->write(m_buffer);
    m_buffer.clear();
}

} // namespace Torvix
