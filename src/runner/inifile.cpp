#include "runner/inifile.h"

#include "shared/settings/values.h"
#include "shared/text/nearestname.h"

#include <QFile>
#include <QFileInfo>
#include <QMap>

#include <algorithm>
#include <optional>

namespace Torvix {

namespace {

constexpr char groupName[] = "General";

/** Where a key stands, and its value as it stands there. */
struct IniLine
{
    int number = 0;
    QString value;
};

/** Takes the text line by line. */
class IniReader
{
public:
    /** Empty, or what is wrong with the line. */
    QString take(const QString& line, int number)
    {
        if (line.isEmpty() || line.startsWith('#'))
            return {};
        if (line.startsWith('['))
            return takeGroup(line);
        const int equal = line.indexOf('=');
        if (equal <= 0)
            return QStringLiteral("'%1' is neither KEY = VALUE nor [%2] nor a comment with #")
                .arg(line.left(60), QLatin1String(groupName));
        const QString key = line.left(equal).trimmed();
        if (!m_inGroup)
            return QStringLiteral("'%1' stands before [%2]").arg(key, QLatin1String(groupName));
        if (m_lines.contains(key))
            return QStringLiteral("'%1' is given again, first in line %2")
                .arg(key, QString::number(m_lines[key].number));
        m_lines.insert(key, {number, line.mid(equal + 1).trimmed()});
        return {};
    }

    /** By key. */
    const QMap<QString, IniLine>& lines() const { return m_lines; }

private:
    QString takeGroup(const QString& line)
    {
        if (line != QStringLiteral("[%1]").arg(QLatin1String(groupName)))
            return QStringLiteral("unknown group %1; there is only [%2]")
                .arg(line.left(60), QLatin1String(groupName));
        if (m_inGroup)
            return QStringLiteral("%1 is given again").arg(line);
        m_inGroup = true;
        return {};
    }

    bool m_inGroup = false;
    QMap<QString, IniLine> m_lines;
};

/** Empty, or what is wrong with the key or its value. */
QString takeKey(const QVector<IniKey>& known, const QString& key, const QString& value)
{
    const auto row = std::find_if(known.begin(), known.end(),
                                  [&key](const IniKey& each) { return key == QLatin1String(each.key); });
    if (row == known.end()) {
        QStringList names;
        for (const IniKey& each : known)
            names += QLatin1String(each.key);
        return QStringLiteral("unknown key '%1'%2; known are %3")
            .arg(key, didYouMean(key, names), names.join(QLatin1String(", ")));
    }
    return row->read(value) ? QString()
                            : QStringLiteral("'%1' has to be %2").arg(key, QLatin1String(row->kind));
}

} // namespace

bool readPositiveNumber(const QString& value, int* number)
{
    const int read = value.toInt();
    if (read > 0)
        *number = read;
    return read > 0;
}

bool readFlag(const QString& value, bool* flag)
{
    const std::optional<bool> read = boolValue(value);
    *flag = read.value_or(*flag);
    return read.has_value();
}

bool readStrings(const QString& value, QStringList* strings)
{
    QStringList read;
    for (int at = 0; at < value.size() && value[at] == '"';) {
        const Result<QString> string = readQuotedValue(value, &at);
        if (!string)
            return false;
        read.append(*string);
        while (at < value.size() && value[at].isSpace())
            ++at;
        if (at == value.size()) {
            *strings = read;
            return true;
        }
        if (value[at] != ',')
            return false;
        do
            ++at;
        while (at < value.size() && value[at].isSpace());
    }
    return false;
}

bool readIniFile(const QString& path, const QVector<IniKey>& keys, QString* error)
{
    if (!QFileInfo::exists(path))
        return true;
    QFile file(path);
    // A device or a pipe may have no end.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("%1: cannot be read: %2")
                     .arg(path,
                          QFileInfo(path).isFile() ? file.errorString() : QStringLiteral("it is not a file"));
        return false;
    }
    IniReader reader;
    const auto failed = [&](int line, const QString& what) {
        if (!what.isEmpty())
            *error = QStringLiteral("%1:%2: %3").arg(path, QString::number(line), what);
        return !what.isEmpty();
    };
    for (int number = 1; !file.atEnd(); ++number) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        const bool isText = !line.contains(QChar::ReplacementCharacter) && !line.contains(QChar::Null);
        if (failed(number, isText ? reader.take(line, number) : QStringLiteral("is not UTF-8 text")))
            return false;
    }
    for (auto it = reader.lines().begin(); it != reader.lines().end(); ++it) {
        if (failed(it->number, takeKey(keys, it.key(), it->value)))
            return false;
    }
    return true;
}

} // namespace Torvix
