#include "launcher/process/shellwords.h"

#include <algorithm>

namespace Torvix {

namespace {

/** What keeps a meaning between double quotes unless a backslash stands before it. */
const QLatin1String meantInQuotes("\"\\$`");

bool isPlain(QChar character)
{
    return character.isLetterOrNumber() || character.unicode() > 0x7f ||
           QLatin1String("_@%+=:,./-").contains(character);
}

QString quoted(const QString& word)
{
    QString text(QLatin1Char('"'));
    for (const QChar character : word) {
        if (meantInQuotes.contains(character))
            text += QLatin1Char('\\');
        text += character;
    }
    return text + QLatin1Char('"');
}

/** Reads one text from its beginning to its end. */
class WordReader
{
public:
    explicit WordReader(const QString& text) : m_text(text) {}

    std::optional<QStringList> read(QString* error)
    {
        while (m_at < m_text.size()) {
            const QChar character = m_text[m_at++];
            if (QLatin1String(" \t\n").contains(character))
                endWord();
            else if (character == QLatin1Char('\'') || character == QLatin1Char('"'))
                readQuotes(character);
            else if (character == QLatin1Char('\\'))
                readEscape();
            else
                add(character);
        }
        endWord();
        *error = m_error;
        return m_error.isEmpty() ? std::make_optional(m_words) : std::nullopt;
    }

private:
    void add(QChar character)
    {
        m_word += character;
        m_isInWord = true;
    }

    void endWord()
    {
        if (m_isInWord)
            m_words.append(m_word);
        m_word.clear();
        m_isInWord = false;
    }

    void readQuotes(QChar quote)
    {
        const int begin = m_at;
        m_isInWord = true; // also with nothing between them
        for (; m_at < m_text.size() && m_text[m_at] != quote; ++m_at) {
            const bool isEscape = quote == QLatin1Char('"') && m_text[m_at] == QLatin1Char('\\') &&
                                  m_at + 1 < m_text.size() && meantInQuotes.contains(m_text[m_at + 1]);
            m_at += isEscape ? 1 : 0;
            add(m_text[m_at]);
        }
        if (m_at++ >= m_text.size())
            m_error = QStringLiteral("the quote %1 at character %2 is not closed").arg(quote).arg(begin);
    }

    void readEscape()
    {
        if (m_at < m_text.size())
            add(m_text[m_at++]);
        else
            m_error = QStringLiteral("it ends with a backslash, which takes the meaning from a character "
                                     "behind it");
    }

    const QString& m_text;
    int m_at = 0;
    QStringList m_words;
    QString m_word;
    bool m_isInWord = false;
    QString m_error;
};

} // namespace

std::optional<QStringList> splitShellWords(const QString& text, QString* error)
{
    return WordReader(text).read(error);
}

QString joinShellWords(const QStringList& words)
{
    QStringList texts;
    for (const QString& word : words)
        texts += !word.isEmpty() && std::all_of(word.begin(), word.end(), isPlain) ? word : quoted(word);
    return texts.join(QLatin1Char(' '));
}

} // namespace Torvix
