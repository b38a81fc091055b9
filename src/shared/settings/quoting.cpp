// The text of keys and values: normal form, quotes and environment variables.
#include "shared/settings/settings.h"

#include "shared/host/environment.h"
#include "shared/settings/values.h"

namespace Torvix {

namespace {

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
    return quotedValue(string);
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
    // Commas and blanks, but also any stray text between strings, are skipped.
    for (int at = raw.indexOf('"'); at >= 0; at = raw.indexOf('"', at)) {
        const Result<QString> string = readQuotedValue(raw, &at);
        if (!string) {
            qWarning("Torvix::Settings: %s in %s", string.error().toUtf8().constData(),
                     fileName.toLocal8Bit().constData());
            return false;
        }
        list.append(*string);
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
