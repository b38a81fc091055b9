// The text of keys and values: normal form, quotes, escapes and environment variables.
#include "shared/settings/settings.h"

#include "shared/host/environment.h"

namespace Torvix {

namespace {

struct Escape
{
    char letter;
    char character;
};

constexpr Escape escapes[] = {{'\\', '\\'}, {'"', '"'}, {'n', '\n'}, {'r', '\r'}, {'t', '\t'}};

/** How much a text may grow by its variables; a variable that holds itself would grow without end. */
constexpr int maxGrowth = 1 << 20;

} // namespace

QString Settings::normalizeKey(const QString& key) const
{
    QString normal = key;
    if (normal.startsWith('/'))
        normal.remove(0, 1);
    if (normal.endsWith('/'))
        normal.chop(1);
    // One pass: of three slashes in a row, two stay.
    return normal.replace('=', '_').replace(QLatin1String("//"), QLatin1String("/"));
}

QString Settings::quoteString(const QString& string) const
{
    QString quoted;
    quoted.reserve(string.size() + 2);
    quoted += '"';
    for (const QChar character : string) {
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

bool Settings::unquoteString(QString& string) const
{
    QStringList list;
    if (!unquoteStringList(string, list))
        return false;
    if (list.size() != 1) {
        qWarning("Torvix::Settings: entry is not a string in %s", fileName.toLocal8Bit().constData());
        return false;
    }
    string = list.first();
    return true;
}

bool Settings::unquoteStringList(const QString& raw, QStringList& list) const
{
    enum { Outside, Inside, AfterBackslash } state = Outside;
    QString current;

    const auto addEscaped = [&current, this](QChar letter) {
        for (const Escape& escape : escapes) {
            if (letter == escape.letter) {
                current += escape.character;
                return true;
            }
        }
        const uint code = letter.unicode();
        const QByteArray file = fileName.toLocal8Bit();
        if (code < 256) {
            qWarning("Torvix::Settings: unknown quoted character '%c' (0x%x) in %s", int(code), code,
                     file.constData());
        } else {
            qWarning("Torvix::Settings: unknown quoted character with hex code 0x%x in %s", code,
                     file.constData());
        }
        return false;
    };

    for (const QChar character : raw) {
        switch (state) {
        case Outside:
            // Commas and blanks, but also any stray text between strings, are skipped.
            if (character == '"')
                state = Inside;
            break;
        case Inside:
            if (character == '"') {
                list.append(current);
                current.clear();
                state = Outside;
            } else if (character == '\\') {
                state = AfterBackslash;
            } else {
                current += character;
            }
            break;
        case AfterBackslash:
            if (!addEscaped(character))
                return false;
            state = Inside;
            break;
        }
    }
    if (!current.isEmpty() || state != Outside) {
        qWarning("Torvix::Settings: string not delimited by quotes in %s",
                 fileName.toLocal8Bit().constData());
        return false;
    }
    return true;
}

void Settings::expandEnvironmentVariables(QString& string) const
{
    const int maxSize = string.size() + maxGrowth;
    int position = 0;
    for (;;) {
        const int dollar = string.indexOf('$', position);
        position = dollar + 1;
        if (dollar < 0 || position == string.size())
            return;
        if (string[position] == '$') {
            string.remove(position, 1);
        } else if (string[position] == '(') {
            const int end = string.indexOf(')', position);
            if (end < 0)
                return;
            const std::string name = string.mid(position + 1, end - position - 1).toStdString();
            const QString value = QString::fromStdString(Environment::getVariable(name));
            if (!value.isEmpty())
                string.replace(dollar, end + 1 - dollar, value);
            if (string.size() > maxSize) {
                qWarning("Torvix::Settings: variables expand to too long a text in %s",
                         fileName.toLocal8Bit().constData());
                return;
            }
            // This may lie inside the value: a value can itself expand.
            position = dollar + 2;
        }
    }
}

} // namespace Torvix
