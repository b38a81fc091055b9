#pragma once

#include "objectmodel/export.h"

#include <QString>
#include <QVector>

namespace Torvix {

/** An enumeration that a class declares: its keys with their values, in order. */
class TORVIXOBJECTMODEL_EXPORT Enum
{
public:
    struct Key
    {
        QString name;
        int value = 0;
    };

    Enum(const QString& name, bool isFlag, const QVector<Key>& keys);

    QString name() const { return m_name; }
    /** True when values are combinations of keys. */
    bool isFlag() const { return m_isFlag; }

    int count() const { return m_keys.size(); }
    /** Null string when there is no such index. */
    QString key(int index) const;
    /** 0 when there is no such index. */
    int value(int index) const;
    /** The value of a key; `*found` (may be null) tells whether there is such a key, else 0. */
    int value(const QString& key, bool* found) const;
    /** The key of a value, or for a flag the keys joined by "|"; null string when none fits. */
    QString keyForValue(int value) const;

private:
    QString m_name;
    bool m_isFlag;
    QVector<Key> m_keys;
};

} // namespace Torvix
