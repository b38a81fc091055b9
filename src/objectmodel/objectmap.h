#pragma once

#include "objectmodel/objectname.h"

#include <QMap>
#include <QString>

namespace Torvix {

/**
 * Symbolic names for real names, kept in a text file:
 *
 *     # the main window
 *     'Main' = {type='MainWindow' visible=true}
 *     'OK button' = {type='QPushButton' text='OK' window='Main'}
 *
 * A name with a scripted map of its own may replace the lookups by deriving from this class.
 */
class TORVIXOBJECTMODEL_EXPORT ObjectMap
{
public:
    ObjectMap() = default;
    virtual ~ObjectMap() = default;
    ObjectMap(const ObjectMap&) = delete;
    ObjectMap& operator=(const ObjectMap&) = delete;

    /** The process-wide map; never null. An empty one of its own where none was set. */
    static ObjectMap* self();
    /** Not owned; null goes back to the own one. */
    static void setSelf(ObjectMap* map);

    /** The whole table, sorted. */
    virtual QMap<QString, ObjectName> table() const { return m_table; }
    virtual bool contains(const QString& symbolicName) const { return m_table.contains(symbolicName); }
    /** Empty when there is no such symbolic name. */
    virtual ObjectName objectName(const QString& symbolicName) const;

    /**
     * The symbolic name for a name. A text that is a symbolic name already is returned as it is.
     * Where no entry has this real name, one is made under a name that says what it is ("OK button"),
     * or, with `create` false, the result is a null string.
     */
    virtual QString symbolicName(const QString& name, bool create);
    /** The text form of the real name; a real name is returned as it is, null string if unknown. */
    virtual QString realName(const QString& symbolicName) const;

    virtual void insert(const QString& symbolicName, const ObjectName& name);
    virtual bool remove(const QString& symbolicName);
    virtual void clear();

    /**
     * Replaces the table by the file's. On failure (no such file, or a line that cannot be read,
     * told with file and line) the table stays as it is.
     */
    Result<void> load(const QString& path);
    /** Writes the file anew, sorted; comments stay with the entry below them. Replaces atomically. */
    Result<void> save(const QString& path) const;

    /** A name for an entry that is not taken yet. */
    QString suggestName(const ObjectName& name) const;

private:
    QMap<QString, ObjectName> m_table;
    /** Comment lines above an entry; those below the last one under a null name. */
    QMap<QString, QString> m_comments;
};

} // namespace Torvix
