#include "interpreter/js/http/formdata.h"

#include <algorithm>

namespace Torvix {

bool FormData::has(const QString& key) const
{
    return m_entries.contains(key);
}

QString FormData::get(const QString& key) const
{
    return getAll(key).value(0);
}

QStringList FormData::getAll(const QString& key) const
{
    QStringList values = m_entries.values(key);
    std::reverse(values.begin(), values.end()); // the map has the newest first
    return values;
}

void FormData::set(const QString& key, const QString& value)
{
    m_entries.remove(key);
    m_entries.insert(key, value);
}

void FormData::append(const QString& key, const QString& value)
{
    m_entries.insert(key, value);
}

void FormData::remove(const QString& key)
{
    m_entries.remove(key);
}

} // namespace Torvix
