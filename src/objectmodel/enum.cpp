#include "objectmodel/enum.h"

#include <QStringList>

namespace Torvix {

Enum::Enum(const QString& name, bool isFlag, const QVector<Key>& keys)
    : m_name(name)
    , m_isFlag(isFlag)
    , m_keys(keys)
{
}

QString Enum::key(int index) const
{
    return index >= 0 && index < m_keys.size() ? m_keys[index].name : QString();
}

int Enum::value(int index) const
{
    return index >= 0 && index < m_keys.size() ? m_keys[index].value : 0;
}

int Enum::value(const QString& key, bool* found) const
{
    for (const Key& entry : m_keys) {
        if (entry.name == key) {
            if (found)
                *found = true;
            return entry.value;
        }
    }
    if (found)
        *found = false;
    return 0;
}

QString Enum::keyForValue(int value) const
{
    for (const Key& entry : m_keys)
        if (entry.value == value)
            return entry.name;
    if (!m_isFlag)
        return QString();
    QStringList parts;
    int left = value;
    for (const Key& entry : m_keys) {
        if (entry.value != 0 && (left & entry.value) == entry.value) {
            parts.append(entry.name);
            left &= ~entry.value;
        }
    }
    return left == 0 ? parts.join(QLatin1Char('|')) : QString();
}

} // namespace Torvix
