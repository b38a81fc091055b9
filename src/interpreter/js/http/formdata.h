#pragma once

#include <QMultiMap>
#include <QString>
#include <QStringList>

namespace Torvix {

/**
 * The text fields of a form, several of one key allowed.
 *
 * Iteration runs by key, and within a key from the newest entry to the oldest; get() and getAll()
 * answer in the order of adding.
 */
class FormData
{
public:
    using const_iterator = QMultiMap<QString, QString>::const_iterator;

    const_iterator constBegin() const { return m_entries.constBegin(); }
    const_iterator constEnd() const { return m_entries.constEnd(); }

    bool has(const QString& key) const;
    /** The oldest value of the key; a null string if there is none. */
    QString get(const QString& key) const;
    /** All values of the key, oldest first. */
    QStringList getAll(const QString& key) const;

    /** Replaces all entries of the key by one. */
    void set(const QString& key, const QString& value);
    /** Adds an entry to those of the key. */
    void append(const QString& key, const QString& value);
    /** Removes all entries of the key. */
    void remove(const QString& key);

private:
    QMultiMap<QString, QString> m_entries;
};

} // namespace Torvix
