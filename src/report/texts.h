#pragma once

#include <QByteArray>
#include <QString>

class QIODevice;

namespace Torvix {

struct Attachment;
struct ReporterOptions;
struct ResultEntry;
struct RunSummary;

/** "1.2 s", "850 ms", "2 min 03 s". */
QString durationText(qint64 durationMs);

/** "file:line", or the file alone when the line is not known (0). */
QString positionText(const QString& file, int line);

/** file below folder as a relative path, anything else as it is. */
QString relativeTo(const QString& folder, const QString& file);

/** The first characters of a text that is longer than the limit, with a line that says how many more
 *  there are. */
QString cutEnd(const QString& text, int limit);

/** The last characters of such a text, with that line before them. */
QString cutBegin(const QString& text, int limit);

/** The message of an entry, said of a check that was to fail that it did not. */
QString headline(const ResultEntry& entry);

/** Detail and difference, one below the other; empty when there is neither. */
QString findings(const ResultEntry& entry);

/** "3 passed, 1 failed, 2 not run". */
QString countsText(const RunSummary& run);

/** The attachment's path as a report has to give it. */
QString linkTo(const Attachment& attachment, const ReporterOptions& options);

/** Several texts with line ends between them, of which the first and the last are kept when there are more
 *  characters than the limit. */
class BoundedText
{
public:
    explicit BoundedText(int limit) : m_limit(limit) {}

    void addLine(const QString& text);
    bool isEmpty() const { return m_length == 0; }
    QString text() const;

private:
    int m_limit;
    QString m_head;
    QString m_tail;      ///< what came behind the head; shortened from time to time
    qint64 m_length = 0; ///< of all
};

/** Writes texts to a device as UTF-8, in large pieces. What went wrong is told by the device. */
class TextOutput
{
public:
    explicit TextOutput(QIODevice* device) : m_device(device) {}
    ~TextOutput() { flush(); }
    TextOutput(const TextOutput&) = delete;
    TextOutput& operator=(const TextOutput&) = delete;

    TextOutput& operator<<(const QString& text) { return *this << text.toUtf8(); }
    TextOutput& operator<<(const QByteArray& utf8);
    TextOutput& operator<<(const char* utf8);
    void flush();

private:
    QIODevice* m_device;
    QByteArray m_buffer;
};

} // namespace Torvix
