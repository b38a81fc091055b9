#include "objectmodel/nametext.h"

#include <utility>

namespace Torvix {

namespace {

bool isKeyCharacter(QChar c)
{
    return (c.unicode() < 128 && c.isLetterOrNumber()) || c == QLatin1Char('_') || c == QLatin1Char('-') ||
           c == QLatin1Char('.');
}

} // namespace

void NameText::fail(const QString& message)
{
    if (m_error.isEmpty())
        m_error = QStringLiteral("%1 at column %2").arg(message).arg(m_at + 1);
    m_at = m_text.size();
}

void NameText::skipSpace()
{
    while (next().isSpace())
        ++m_at;
}

bool NameText::take(QChar wanted)
{
    if (m_at >= m_text.size() || m_text[m_at] != wanted)
        return false;
    ++m_at;
    return true;
}

void NameText::expect(QChar wanted)
{
    if (!take(wanted))
        fail(QStringLiteral("expected '%1'").arg(wanted));
}

void NameText::expectEnd()
{
    skipSpace();
    if (m_at < m_text.size())
        fail(QStringLiteral("unexpected '%1'").arg(next()));
}

QString NameText::rest()
{
    return m_text.mid(std::exchange(m_at, m_text.size()));
}

QString NameText::key()
{
    if (isQuote())
        return quoted();
    const int begin = m_at;
    while (isKeyCharacter(next()))
        ++m_at;
    if (m_at == begin)
        fail(m_at < m_text.size() ? QStringLiteral("expected a property, not '%1'").arg(next())
                                  : QStringLiteral("expected '}'"));
    return m_text.mid(begin, m_at - begin);
}

QString NameText::word()
{
    const int begin = m_at;
    const auto isMark = [](QChar c) { return c.isSpace() || QStringLiteral("{},'\"=").contains(c); };
    while (m_at < m_text.size() && !isMark(next()))
        ++m_at;
    return m_text.mid(begin, m_at - begin);
}

QString NameText::codePoint()
{
    expect(QLatin1Char('{'));
    const int begin = m_at;
    while (m_at < m_text.size() && next() != QLatin1Char('}'))
        ++m_at;
    bool isNumber = false;
    const uint code = m_text.midRef(begin, m_at - begin).toUInt(&isNumber, 16);
    if (!isNumber || code > 0x10ffff) {
        fail(QStringLiteral("'\\u{...}' needs a code point in hexadecimal digits"));
        return QString();
    }
    expect(QLatin1Char('}'));
    return code < 0x10000 ? QString(QChar(ushort(code))) : QString::fromUcs4(&code, 1);
}

QString NameText::quoted()
{
    const QChar quoteMark = next();
    const int begin = m_at++;
    QString result;
    while (m_at < m_text.size()) {
        const QChar c = m_text[m_at++];
        if (c == quoteMark)
            return result;
        if (c != QLatin1Char('\\')) {
            result += c;
            continue;
        }
        const QChar escaped = next();
        ++m_at;
        if (escaped == QLatin1Char('n'))
            result += QLatin1Char('\n');
        else if (escaped == QLatin1Char('r'))
            result += QLatin1Char('\r');
        else if (escaped == QLatin1Char('t'))
            result += QLatin1Char('\t');
        else if (escaped == QLatin1Char('u'))
            result += codePoint();
        else if (escaped == QLatin1Char('\\') || escaped == QLatin1Char('\'') || escaped == QLatin1Char('"'))
            result += escaped;
        else
            fail(QStringLiteral("unknown escape '\\%1'").arg(escaped));
    }
    if (!failed()) {
        m_at = begin;
        fail(QStringLiteral("the closing quote is missing"));
    }
    return QString();
}

QString NameText::quote(const QString& text)
{
    QString result(QLatin1Char('\''));
    for (QChar c : text) {
        if (c == QLatin1Char('\'') || c == QLatin1Char('\\'))
            result += QLatin1Char('\\') + QString(c);
        else if (c == QLatin1Char('\n'))
            result += QLatin1String("\\n");
        else if (c == QLatin1Char('\r'))
            result += QLatin1String("\\r");
        else if (c == QLatin1Char('\t'))
            result += QLatin1String("\\t");
        else if (c.category() == QChar::Other_Control || c.category() == QChar::Separator_Line ||
                 c.category() == QChar::Separator_Paragraph)
            result += QStringLiteral("\\u{%1}").arg(c.unicode(), 0, 16);
        else
            result += c;
    }
    return result + QLatin1Char('\'');
}

QString NameText::writeKey(const QString& key)
{
    bool isPlain = !key.isEmpty();
    for (QChar c : key)
        isPlain = isPlain && isKeyCharacter(c);
    return isPlain ? key : quote(key);
}

} // namespace Torvix
