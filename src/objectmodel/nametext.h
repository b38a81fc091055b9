#pragma once

#include <QString>

namespace Torvix {

/** The words of the text form of names, read one after the other; and how they are written. */
class NameText
{
public:
    explicit NameText(const QString& text) : m_text(text) {}

    void skipSpace();
    /** The character to come, null at the end. */
    QChar next() const { return m_at < m_text.size() ? m_text[m_at] : QChar(); }
    bool isQuote() const { return next() == QLatin1Char('\'') || next() == QLatin1Char('"'); }
    /** Takes the character if it is the next. */
    bool take(QChar wanted);
    void expect(QChar wanted);
    void expectEnd();
    /** All that is left; then the end is reached. */
    QString rest();
    /** A property: an identifier, or quoted. */
    QString key();
    /** A quoted text without its quotes, escapes replaced. */
    QString quoted();
    /** Up to the next space or mark. */
    QString word();

    void fail(const QString& message);
    bool failed() const { return !m_error.isEmpty(); }
    QString error() const { return m_error; }

    static QString quote(const QString& text);
    /** Without quotes where it is an identifier. */
    static QString writeKey(const QString& key);

private:
    QString codePoint();

    QString m_text;
    int m_at = 0;
    QString m_error;
};

} // namespace Torvix
