#pragma once

#include "engine/value.h"

#include <vector>

namespace KJS {

/** The arguments of a call. */
class TORVIXKJS_EXPORT List
{
public:
    List() = default;
    List(std::initializer_list<Value> values) : m_values(values) {}

    /** A list with nothing in it. */
    static const List& empty();

    void append(const Value& value) { m_values.push_back(value); }
    void clear() { m_values.clear(); }
    void reserve(int size) { m_values.reserve(static_cast<std::size_t>(size)); }

    int size() const { return static_cast<int>(m_values.size()); }
    bool isEmpty() const { return m_values.empty(); }
    /** Undefined when there is no such argument. */
    Value at(int index) const;
    Value operator[](int index) const { return at(index); }

    std::vector<Value>::const_iterator begin() const { return m_values.begin(); }
    std::vector<Value>::const_iterator end() const { return m_values.end(); }

private:
    std::vector<Value> m_values;
};

} // namespace KJS
