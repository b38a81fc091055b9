#pragma once

#include "engine/identifier.h"
#include "engine/object.h"

#include <vector>

namespace KJS {

/** A property of an object, by name; making one reads nothing. */
class TORVIXKJS_EXPORT Reference
{
public:
    Reference() = default;
    Reference(const Object& base, const Identifier& name) : m_base(base), m_name(name) {}

    Object getBase(ExecState* exec) const;
    Identifier getPropertyName(ExecState* exec) const;
    Value getValue(ExecState* exec) const;
    void putValue(ExecState* exec, const Value& value);
    bool deleteValue(ExecState* exec);

private:
    Object m_base;
    Identifier m_name;
};

class ReferenceListIterator;

/** What propList answers: the enumerable properties in the order of enumeration. */
class TORVIXKJS_EXPORT ReferenceList
{
public:
    void append(const Reference& reference) { m_references.push_back(reference); }
    int length() const { return static_cast<int>(m_references.size()); }
    bool isEmpty() const { return m_references.empty(); }
    ReferenceListIterator begin() const;
    ReferenceListIterator end() const;

private:
    friend class ReferenceListIterator;
    std::vector<Reference> m_references;
};

/** Valid while its list lives and is not changed. */
class TORVIXKJS_EXPORT ReferenceListIterator
{
public:
    const Reference& operator*() const { return *m_position; }
    const Reference* operator->() const { return &*m_position; }
    ReferenceListIterator& operator++()
    {
        ++m_position;
        return *this;
    }
    ReferenceListIterator operator++(int) { return ReferenceListIterator(m_position++); }
    bool operator==(const ReferenceListIterator& other) const { return m_position == other.m_position; }
    bool operator!=(const ReferenceListIterator& other) const { return m_position != other.m_position; }

private:
    friend class ReferenceList;
    using Position = std::vector<Reference>::const_iterator;
    explicit ReferenceListIterator(Position position) : m_position(position) {}
    Position m_position;
};

inline ReferenceListIterator ReferenceList::begin() const
{
    return ReferenceListIterator(m_references.begin());
}
inline ReferenceListIterator ReferenceList::end() const
{
    return ReferenceListIterator(m_references.end());
}

} // namespace KJS
