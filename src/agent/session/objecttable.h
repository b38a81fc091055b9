#pragma once

#include "agent/reflection/value.h"

#include <QHash>
#include <QObject>

#include <functional>
#include <unordered_map>

namespace Torvix::Agent {

/**
 * The references that one connection holds, as numbers that are never used twice.
 *
 * A QObject has one number as long as a reference is held. Values are held as copies. What has been
 * destroyed keeps its number until it is released, so that a late request gets a clear answer.
 */
class ObjectTable
{
public:
    /** @param destroyed called with the number when a QObject that is held has been destroyed */
    explicit ObjectTable(std::function<void(qint64)> destroyed) : m_destroyed(std::move(destroyed)) {}
    ObjectTable(const ObjectTable&) = delete;
    ObjectTable& operator=(const ObjectTable&) = delete;

    /** Counts one reference and gives the number; 0 for a null pointer. */
    qint64 add(const Value& value);

    /** Throws when the number is unknown or its object is gone. The value may be changed in place. */
    Value& at(qint64 id);

    /** The same; throws also for a QObject of another thread, which may be at work with it just now. */
    Value& usableAt(qint64 id);

    /** The QObject of that number; throws also when it is none, or one of another thread. */
    QObject* objectAt(qint64 id);

    /** Gives back `count` references; unknown numbers are ignored. */
    void release(qint64 id, qint64 count);

    std::size_t size() const { return m_entries.size(); }

private:
    struct Entry
    {
        Value value;
        qint64 count = 0;
        QObject* address = nullptr;
        std::function<bool()> isAlive;
        QMetaObject::Connection connection;
    };
    void forget(qint64 id);

    std::function<void(qint64)> m_destroyed;
    std::unordered_map<qint64, Entry> m_entries;
    QHash<QObject*, qint64> m_ids;
    qint64 m_last = 0;
    /** The receiver of the destroyed() signals; last, so that it goes first. */
    QObject m_context;
};

} // namespace Torvix::Agent
