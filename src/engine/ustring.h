#pragma once

#include "engine/export.h"

#include <QString>

namespace KJS {

/**
 * A string of the engine: UTF-16 text, or null ("no string"), which is not the same as empty.
 * Unpaired surrogates and NUL characters are kept. A copy is cheap: the text is shared.
 */
class TORVIXKJS_EXPORT UString
{
public:
    UString() = default;
    /** From UTF-8; a null pointer gives the null string. */
    UString(const char* utf8) : m_text(QString::fromUtf8(utf8)) {}
    /** A null QString gives the null string. */
    UString(QString text) : m_text(std::move(text)) {}

    static UString null() { return UString(); }
    /** Decimal digits. */
    static UString from(int number) { return UString(QString::number(number)); }
    static UString from(unsigned number) { return UString(QString::number(number)); }
    /** As script converts the number to a string (ECMA-262 Number::toString): "1", "1e+21", "NaN". */
    static UString from(double number);

    bool isNull() const { return m_text.isNull(); }
    bool isEmpty() const { return m_text.isEmpty(); }
    /** In UTF-16 units. */
    int size() const { return m_text.size(); }

    /** Null stays null. */
    QString qstring() const { return m_text; }
    QByteArray utf8() const { return m_text.toUtf8(); }
    /** Latin-1 form; a character outside it becomes "?". Valid until this string changes. */
    const char* ascii() const;

    UString& operator+=(const UString& other);
    friend UString operator+(UString left, const UString& right) { return left += right; }
    /** Null and empty are equal, as with QString. */
    friend bool operator==(const UString& a, const UString& b) { return a.m_text == b.m_text; }
    friend bool operator!=(const UString& a, const UString& b) { return a.m_text != b.m_text; }
    friend bool operator<(const UString& a, const UString& b) { return a.m_text < b.m_text; }

private:
    QString m_text;
    mutable QByteArray m_ascii;
};

} // namespace KJS
