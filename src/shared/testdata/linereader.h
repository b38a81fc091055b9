#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <memory>
#include <optional>
#include <string_view>

namespace Torvix {

/**
 * The logical lines of a text file, in UTF-8: a line feed inside quotes does not end one.
 *
 * A file that begins with the byte-order mark of another Unicode encoding is converted first; the mark
 * of UTF-8 is passed. Reading costs time linear in the file, wherever its quotes and line feeds stand.
 */
class LineReader
{
public:
    /** Null when the file cannot be opened. */
    static std::unique_ptr<LineReader> open(const QString& fileName);

    QString fileName() const { return m_file.fileName(); }

    /** True when the whole text is consumed. */
    bool atEnd();

    /**
     * Consumes one logical line, quotes kept, without its line feed and a carriage return before that.
     * A last line that the end of the file cuts off keeps its carriage return. Empty at the end.
     * The view is good until the next call.
     */
    std::string_view next();

    /** Reads the rest of the file at once, so that all views to come are good as long as text(). */
    void readAll();

    /** What is read so far. Copies share the bytes. */
    const QByteArray& text() const { return m_text; }

private:
    explicit LineReader(const QString& fileName) : m_file(fileName) {}

    /** Where the line that starts at m_position ends, if what is read so far tells. */
    std::optional<int> findLineFeed();
    int findNext(char wanted, int& cached, int from) const;
    bool readMore();
    bool readMore(qint64 wanted);
    void convertFromMarkedEncoding();

    QFile m_file;
    QByteArray m_text;
    int m_position = 0;
    bool m_complete = false;
    int m_nextQuote = -1; // the first at or after where it was last looked for; text size if none
    int m_nextLineFeed = -1;
};

} // namespace Torvix
