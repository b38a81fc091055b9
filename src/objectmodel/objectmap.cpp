#include "objectmodel/objectmap.h"

#include "objectmodel/nametext.h"

#include <QFile>
#include <QSaveFile>
#include <QTextStream>

namespace Torvix {

namespace {

ObjectMap*& currentMap()
{
    static ObjectMap* current = nullptr;
    return current;
}

struct Entry
{
    QString symbolicName;
    ObjectName name;
};

/** One line: 'symbolic name' = {real name}. */
Result<Entry> readEntry(const QString& line)
{
    NameText text(line);
    text.skipSpace();
    const QString symbolicName = text.key();
    text.skipSpace();
    text.expect(QLatin1Char('='));
    text.skipSpace();
    if (text.failed())
        return Failure{text.error()};
    const QString name = text.rest();
    if (!ObjectName::isRealName(name))
        return Failure{QStringLiteral("expected a real name in braces after '='")};
    return ObjectName::fromString(name).then([&symbolicName](const ObjectName& real) {
        return Entry{symbolicName, real};
    });
}

} // namespace

ObjectMap* ObjectMap::self()
{
    static ObjectMap own;
    return currentMap() ? currentMap() : &own;
}

void ObjectMap::setSelf(ObjectMap* map)
{
    currentMap() = map;
}

ObjectName ObjectMap::objectName(const QString& symbolicName) const
{
    return m_table.value(symbolicName);
}

QString ObjectMap::symbolicName(const QString& name, bool create)
{
    if (!ObjectName::isRealName(name))
        return contains(name) ? name : QString();
    const Result<ObjectName> real = ObjectName::fromString(name);
    if (!real)
        return QString();
    const QMap<QString, ObjectName> entries = table();
    for (auto it = entries.begin(); it != entries.end(); ++it)
        if (it.value() == *real)
            return it.key();
    if (!create)
        return QString();
    const QString suggestion = suggestName(*real);
    insert(suggestion, *real);
    return suggestion;
}

QString ObjectMap::realName(const QString& symbolicName) const
{
    if (ObjectName::isRealName(symbolicName))
        return symbolicName;
    return contains(symbolicName) ? objectName(symbolicName).toString() : QString();
}

void ObjectMap::insert(const QString& symbolicName, const ObjectName& name)
{
    m_table.insert(symbolicName, name);
}

bool ObjectMap::remove(const QString& symbolicName)
{
    m_comments.remove(symbolicName);
    return m_table.remove(symbolicName) > 0;
}

void ObjectMap::clear()
{
    m_table.clear();
    m_comments.clear();
}

QString ObjectMap::suggestName(const ObjectName& name) const
{
    QString type = name.properties().value(QStringLiteral("type")).value;
    if (type.size() > 1 && type[0] == QLatin1Char('Q') && type[1].isUpper())
        type.remove(0, 1);
    QString label;
    for (const char* property : {"text", "title", "windowTitle", "name", "placeholderText"}) {
        const PropertyValue value = name.properties().value(QLatin1String(property));
        if (label.isEmpty() && value.matchType == PropertyValue::Exact)
            label = value.value.simplified().remove(QLatin1Char('&')).left(40);
    }
    const QString base = (label + QLatin1Char(' ') + type).trimmed();
    const QString stem = base.isEmpty() ? QStringLiteral("Object") : base;
    QString free = stem;
    for (int number = 2; contains(free); ++number)
        free = QStringLiteral("%1 %2").arg(stem).arg(number);
    return free;
}

Result<void> ObjectMap::load(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Failure{QStringLiteral("Cannot read the object map %1: %2").arg(path, file.errorString())};
    QMap<QString, ObjectName> read;
    QMap<QString, QString> comments;
    QString comment;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (int number = 1; number <= lines.size(); ++number) {
        const QString line = lines[number - 1].trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#'))) {
            if (number < lines.size())
                comment += line + QLatin1Char('\n');
            continue;
        }
        const Result<Entry> entry = readEntry(line);
        QString problem = entry.error();
        if (entry && read.contains(entry->symbolicName))
            problem = QStringLiteral("'%1' is there twice").arg(entry->symbolicName);
        if (!problem.isEmpty())
            return Failure{QStringLiteral("%1:%2: %3").arg(path).arg(number).arg(problem)};
        read.insert(entry->symbolicName, entry->name);
        comments.insert(entry->symbolicName, comment);
        comment.clear();
    }
    comments.insert(QString(), comment);
    m_table = read;
    m_comments = comments;
    return {};
}

Result<void> ObjectMap::save(const QString& path) const
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        QTextStream stream(&file);
        stream.setCodec("UTF-8");
        const QMap<QString, ObjectName> entries = table();
        for (auto it = entries.begin(); it != entries.end(); ++it)
            stream << m_comments.value(it.key()) << NameText::quote(it.key()) << " = "
                   << it.value().toString() << '\n';
        stream << m_comments.value(QString());
        stream.flush();
        if (file.commit())
            return {};
    }
    return Failure{QStringLiteral("Cannot write the object map %1: %2").arg(path, file.errorString())};
}

} // namespace Torvix
