#include "agent/session/objecttable.h"

#include "agent/reflection/error.h"
#include "agent/reflection/registry.h"
#include "protocol/message.h"

#include <QThread>

namespace Torvix::Agent {

using Protocol::ErrorClass;

qint64 ObjectTable::add(const Value& value)
{
    if (value.isPointer() && !value.address())
        return 0;
    QObject* object = value.object();
    if (object) {
        const auto known = m_ids.constFind(object);
        // Of an object that another thread has destroyed, word may still be on its way.
        if (known != m_ids.constEnd() && m_entries.at(*known).value.object() == object) {
            ++m_entries.at(*known).count;
            return *known;
        }
    }
    const qint64 id = ++m_last;
    Entry& entry = m_entries[id];
    entry.value = value;
    entry.count = 1;
    entry.address = object;
    entry.isAlive = Registry::instance().guardOf(value);
    if (object) {
        m_ids.insert(object, id);
        // At once in this thread; what happens in another one is told to this one.
        entry.connection =
            QObject::connect(object, &QObject::destroyed, &m_context, [this, id] { forget(id); });
    }
    return id;
}

void ObjectTable::forget(qint64 id)
{
    const auto found = m_entries.find(id);
    if (found == m_entries.end())
        return;
    if (m_ids.value(found->second.address) == id)
        m_ids.remove(found->second.address);
    m_destroyed(id);
}

Value& ObjectTable::at(qint64 id)
{
    const auto found = m_entries.find(id);
    if (found == m_entries.end())
        throw Error(QStringLiteral("there is no object with the number %1").arg(id),
                    ErrorClass::NoSuchObject);
    Entry& entry = found->second;
    const bool isGone = (entry.address && !entry.value.object()) || (entry.isAlive && !entry.isAlive());
    if (isGone)
        throw Error(
            QStringLiteral("the %1 has been destroyed").arg(QString::fromLatin1(entry.value.typeName)),
            ErrorClass::Destroyed);
    return entry.value;
}

Value& ObjectTable::usableAt(qint64 id)
{
    Value& value = at(id);
    QObject* object = value.object();
    if (object && object->thread() != QThread::currentThread())
        throw Error(QStringLiteral("the %1 lives in a thread of its own, so that it can be passed on, "
                                   "but not be read, changed or called")
                        .arg(QString::fromLatin1(value.typeName)),
                    ErrorClass::BadValue);
    return value;
}

QObject* ObjectTable::objectAt(qint64 id)
{
    Value& value = usableAt(id);
    if (QObject* object = value.object())
        return object;
    throw Error(QStringLiteral("the %1 is no object of the application's object tree")
                    .arg(QString::fromLatin1(value.typeName)),
                ErrorClass::BadValue);
}

void ObjectTable::release(qint64 id, qint64 count)
{
    const auto found = m_entries.find(id);
    if (found == m_entries.end() || (found->second.count -= count) > 0)
        return;
    QObject::disconnect(found->second.connection);
    if (m_ids.value(found->second.address) == id)
        m_ids.remove(found->second.address);
    m_entries.erase(found);
}

} // namespace Torvix::Agent
