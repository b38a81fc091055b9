#pragma once

#include "engine/value.h"

namespace KJS {

/** How code ended; the codes are fixed. */
enum ComplType {
    Normal = 0, ///< without a value: the text holds declarations only, or nothing
    Break = 1,  ///< not given by this engine
    Continue = 2,
    ReturnValue = 3, ///< with the value of the last statement that has one
    Throw = 4        ///< with the value that was thrown
};

class TORVIXKJS_EXPORT Completion
{
public:
    Completion(ComplType type = Normal, const Value& value = Value()) : m_type(type), m_value(value) {}

    ComplType complType() const { return m_type; }
    /** The null value where the type has none. */
    const Value& value() const { return m_value; }
    bool hasValue() const { return !m_value.isNull(); }

private:
    ComplType m_type;
    Value m_value;
};

} // namespace KJS
