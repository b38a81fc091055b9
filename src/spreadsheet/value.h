#pragma once

#include "spreadsheet/ustring.h"

#include <cstdint>

namespace Swinder {

/**
 * What a cell shows: for a formula, the result that was saved with it.
 *
 * A number is an Integer when it is whole and fits 32 bits, and a Float otherwise. The file knows
 * several encodings of a number, and which of them a program picks says nothing about the number.
 * Dates are numbers: days since the workbook's epoch.
 */
class Value
{
public:
    enum Type {
        Empty = 0,
        Boolean = 1,
        Integer = 2,
        Float = 3,
        String = 4,
        RichText = 5, /**< a string with fonts for its stretches, of which only the characters are kept */
        Error = 6     /**< such as #DIV/0!: see errorCode() */
    };

    Value() = default;
    static Value boolean(bool value) { return Value(Boolean, value ? 1 : 0); }
    static Value number(double value);
    static Value string(UString text, bool rich = false) { return Value(std::move(text), rich); }
    static Value error(std::uint8_t code) { return Value(Error, code); }

    Type type() const { return m_type; }
    bool isEmpty() const { return m_type == Empty; }

    /** Each of these gives false, 0 or the empty text when the value is of another type; numbers convert. */
    bool asBoolean() const { return m_type == Boolean && m_number != 0; }
    int asInteger() const;
    double asFloat() const { return isNumber() ? m_number : 0; }
    UString asString() const { return m_text; }

    /** The code of the file format: 0 #NULL!, 7 #DIV/0!, 15 #VALUE!, 23 #REF!, 29 #NAME?, 36 #NUM!, 42 #N/A.
     */
    int errorCode() const { return m_type == Error ? static_cast<int>(m_number) : 0; }

private:
    Value(Type type, double number) : m_type(type), m_number(number) {}
    Value(UString text, bool rich) : m_type(rich ? RichText : String), m_text(std::move(text)) {}
    bool isNumber() const { return m_type == Integer || m_type == Float; }

    Type m_type = Empty;
    double m_number = 0; // exact for each 32-bit integer
    UString m_text;
};

inline Value Value::number(double value)
{
    const bool whole = value >= INT32_MIN && value <= INT32_MAX && value == static_cast<std::int32_t>(value);
    return Value(whole ? Integer : Float, value);
}

inline int Value::asInteger() const
{
    const bool fits = isNumber() && m_number >= INT32_MIN && m_number <= INT32_MAX;
    return fits ? static_cast<int>(m_number) : 0;
}

} // namespace Swinder
