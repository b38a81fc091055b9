#include "runner/inifile.h"

#include "shared/settings/settings.h"
#include "shared/text/nearestname.h"

#include <QFile>
#include <QFileInfo>
#include <QMap>

#include <algorithm>
#include <utility>

namespace Torvix {

namespace {

constexpr char groupName[] = "General";

QStringList* warnings = nullptr;

void keepWarning(QtMsgType, const QMessageLogContext&, const QString& text)
{
    *warnings += text;
}

/** The store tells of faults in a value by warnings; here they are errors. */
class WarningCatcher
{
public:
    WarningCatcher()
        : m_previousList(std::exchange(warnings, &m_caught))
        , m_previous(qInstallMessageHandler(keepWarning))
    {
    }
    ~WarningCatcher()
    {
        qInstallMessageHandler(m_previous);
        warnings = m_previousList;
    }
    WarningCatcher(const WarningCatcher&) = delete;
    WarningCatcher& operator=(const WarningCatcher&) = delete;
    const QStringList& caught() const { return m_caught; }

private:
    QStringList m_caught;
    QStringList* m_previousList;
    QtMessageHandler m_previous;
};

/** Goes over the text line by line, and knows where each key stands. */
class LineCheck
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
                .arg(key, QString::number(m_lines.value(key)));
        m_lines.insert(key, number);
        return {};
    }

    /** Key to line, in the order of the keys. */
    const QMap<QString, int>& keys() const { return m_lines; }

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
    QMap<QString, int> m_lines;
};

QString takeKey(const Settings& settings, const QVector<IniKey>& known, const QString& key)
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
    const WarningCatcher catcher;
    if (!row->read(settings, key))
        return QStringLiteral("'%1' has to be %2").arg(key, QLatin1String(row->kind));
    return catcher.caught().value(0);
}

} // namespace

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
    LineCheck check;
    const auto failed = [&](int line, const QString& what) {
        if (!what.isEmpty())
            *error = QStringLiteral("%1:%2: %3").arg(path, QString::number(line), what);
        return !what.isEmpty();
    };
    for (int number = 1; !file.atEnd(); ++number) {
        const QByteArray bytes = file.readLine();
        const QString line = QString::fromUtf8(bytes).trimmed();
        if (line.contains(QChar::ReplacementCharacter) || line.contains(QChar::Null)) {
            failed(number, QStringLiteral("is not UTF-8 text"));
            return false;
        }
        if (failed(number, check.take(line, number)))
            return false;
    }
    const Settings settings(path);
    for (auto it = check.keys().begin(); it != check.keys().end(); ++it) {
        if (failed(it.value(), takeKey(settings, keys, it.key())))
            return false;
    }
    return true;
}

} // namespace Torvix
