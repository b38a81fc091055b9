#include "shared/settings/settings.h"

#include "shared/host/environment.h"
#include "shared/settings/values.h"

#include <QDir>

namespace Torvix {

Settings::Settings(const QString& path) : fileName(path)
{
    parse();
}

Settings::Settings(const QString& directory, const QString& file) : Settings(directory + '/' + file) {}

Settings::~Settings()
{
    if (dirty)
        flush();
}

QString Settings::settingsDir()
{
    return QDir::homePath();
}

QString Settings::torvixSettingsDir()
{
    QString directory = QString::fromStdString(Environment::getVariable("TORVIX_USER_SETTINGS_DIR"));
    if (directory.isEmpty())
        directory = QDir::homePath() + QLatin1String("/.torvix");
    // Who writes into it finds out when this has failed.
    QDir().mkpath(directory);
    return directory;
}

QString Settings::userSettingsDir()
{
    return torvixSettingsDir() + QLatin1String("/ver1");
}

QString Settings::defaultGroup()
{
    return QStringLiteral("General");
}

const Settings::Group* Settings::findGroup(const QString& group) const
{
    const auto found = groups.constFind(group);
    return found == groups.constEnd() ? nullptr : &found.value();
}

bool Settings::hasGroup(const QString& group) const
{
    return groups.contains(group);
}

QStringList Settings::groupList() const
{
    return groups.keys();
}

bool Settings::readRawEntry(const QString& group, const QString& key, QString& out) const
{
    const Group* entries = findGroup(group);
    if (!entries)
        return false;
    const auto found = entries->constFind(normalizeKey(key));
    if (found == entries->constEnd())
        return false;
    out = found.value();
    return true;
}

QString Settings::readEntry(const QString& group, const QString& key, const QString& defaultValue) const
{
    QString value;
    if (!readRawEntry(group, key, value) || !unquoteString(value))
        return defaultValue;
    if (expandVariables)
        expandEnvironmentVariables(value);
    return value;
}

QStringList Settings::readListEntry(const QString& group, const QString& key,
                                    const QStringList& defaultValue) const
{
    QString raw;
    QStringList list;
    if (!readRawEntry(group, key, raw) || !unquoteStringList(raw, list))
        return defaultValue;
    if (expandVariables) {
        for (QString& value : list)
            expandEnvironmentVariables(value);
    }
    return list;
}

int Settings::readNumEntry(const QString& group, const QString& key, int defaultValue) const
{
    QString raw;
    if (!readRawEntry(group, key, raw))
        return defaultValue;
    bool ok = false;
    const int value = raw.trimmed().toInt(&ok);
    return ok ? value : defaultValue;
}

double Settings::readDoubleEntry(const QString& group, const QString& key, double defaultValue) const
{
    QString raw;
    if (!readRawEntry(group, key, raw))
        return defaultValue;
    bool ok = false;
    const double value = raw.trimmed().toDouble(&ok);
    return ok ? value : defaultValue;
}

bool Settings::readBoolEntry(const QString& group, const QString& key, bool defaultValue) const
{
    QString raw;
    if (!readRawEntry(group, key, raw))
        return defaultValue;
    return boolValue(raw).value_or(defaultValue);
}

namespace {

/** Calls `visit(rest, slash)` for each key below `parent`: its text past the parent, and the first '/' there.
 */
template <class Group, class Visitor>
void forEachKeyBelow(const Group& group, const QString& parent, Visitor visit)
{
    const QString prefix = parent.isEmpty() ? parent : parent + '/';
    for (auto it = group.lowerBound(prefix); it != group.constEnd() && it.key().startsWith(prefix); ++it) {
        const QString rest = it.key().mid(prefix.size());
        visit(rest, rest.indexOf('/'));
    }
}

} // namespace

QStringList Settings::subkeyList(const QString& group, const QString& key) const
{
    QStringList subkeys;
    if (const Group* entries = findGroup(group)) {
        forEachKeyBelow(*entries, normalizeKey(key), [&subkeys](const QString& rest, int slash) {
            // The keys below one subkey follow one another, so that a repetition is always the last one.
            if (slash >= 0 && (subkeys.isEmpty() || subkeys.last() != rest.leftRef(slash)))
                subkeys.append(rest.left(slash));
        });
    }
    return subkeys;
}

QStringList Settings::entryList(const QString& group, const QString& key) const
{
    QStringList names;
    if (const Group* entries = findGroup(group)) {
        forEachKeyBelow(*entries, normalizeKey(key), [&names](const QString& rest, int slash) {
            if (slash < 0)
                names.append(rest);
        });
    }
    return names;
}

void Settings::writeRawEntry(const QString& group, const QString& key, const QString& value)
{
    groups[group][normalizeKey(key)] = value;
    dirty = true;
}

void Settings::writeEntry(const QString& group, const QString& key, const QString& value)
{
    writeRawEntry(group, key, quoteString(value));
}

void Settings::writeEntry(const QString& group, const QString& key, const char* value)
{
    writeEntry(group, key, QString::fromUtf8(value));
}

void Settings::writeEntry(const QString& group, const QString& key, const QStringList& value)
{
    QStringList quoted;
    for (const QString& string : value)
        quoted.append(quoteString(string));
    writeRawEntry(group, key, quoted.join(','));
}

void Settings::writeEntry(const QString& group, const QString& key, int value)
{
    writeRawEntry(group, key, QString::number(value));
}

void Settings::writeEntry(const QString& group, const QString& key, double value)
{
    writeRawEntry(group, key, QString::number(value, 'g', 6));
}

void Settings::writeEntry(const QString& group, const QString& key, bool value)
{
    writeEntry(group, key, int(value));
}

void Settings::removeEntry(const QString& group, const QString& key)
{
    const auto entries = groups.find(group);
    if (entries == groups.end()) {
        qWarning("Torvix::Settings::removeEntry: group '%s' not found in %s", group.toLocal8Bit().constData(),
                 fileName.toLocal8Bit().constData());
        return;
    }
    entries->remove(normalizeKey(key));
    dirty = true;
}

} // namespace Torvix
