#include "shared/settings/values.h"

namespace Torvix {

namespace {

struct Escape
{
    char letter;
    char character;
};

constexpr Escape escapes[] = {{'\\', '\\'}, {'"', '"'}, {'n', '\n'}, {'r', '\r'}, {'t', '\t'}};

Result<QChar> escaped(QChar letter)
{
    for (const Escape& escape : escapes)
        if (letter == escape.letter)
            return QChar(escape.character);
    const QString code = QString::number(letter.unicode(), 16);
    if (letter.unicode() < 256)
        return Failure{QStringLiteral("unknown quoted character '%1' (0x%2)").arg(letter).arg(code)};
    return Failure{QStringLiteral("unknown quoted character with hex code 0x%1").arg(code)};
}

} // namespace

QString quotedValue(const QString& text)
{
    QString quoted;
    quoted.reserve(text.size() + 2);
    quoted += '"';
    for (const QChar character : text) {
        QChar letter;
        for (const Escape& escape : escapes) {
            if (character == escape.character)
                letter = escape.letter;
        }
        if (!letter.isNull())
            quoted += '\\';
        quoted += letter.isNull() ? character : letter;
    }
    quoted += '"';
    return quoted;
}

Result<QString> readQuotedValue(const QString& raw, int* at)
{
    QString text;
    for (++*at; *at < raw.size(); ++*at) {
        const QChar character = raw[*at];
        if (character == '"') {
            ++*at;
            return text;
        }
        if (character != '\\') {
            text += character;
        } else if (++*at < raw.size()) {
            const Result<QChar> meant = escaped(raw[*at]);
            if (!meant)
                return meant.failure();
            text += *meant;
        }
    }
    return Failure{QStringLiteral("string not delimited by quotes")};
}

std::optional<bool> boolValue(const QString& raw)
{
    QString text = raw.trimmed();
    if (text.endsWith('"'))
        text.chop(1);
    if (text.startsWith('"'))
        text.remove(0, 1);
    bool isNumber = false;
    const int number = text.toInt(&isNumber, 10);
    if (isNumber)
        return number != 0;
    text = text.toUpper();
    if (text == QLatin1String("FALSE"))
        return false;
    if (text == QLatin1String("TRUE"))
        return true;
    return std::nullopt;
}

} // namespace Torvix
