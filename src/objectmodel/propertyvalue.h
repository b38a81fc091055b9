#pragma once

#include "objectmodel/export.h"

#include <QString>

namespace Torvix {

/** What a real name asks of one property. */
class TORVIXOBJECTMODEL_EXPORT PropertyValue
{
public:
    /** How the value is compared; regular expressions and wildcards match the whole value. */
    enum Modifiers { Exact = 0, RegularExpression = 1, Wildcard = 2 };

    enum Type {
        String = 0,
        /** Written without quotes; compared as text like any other. */
        Number = 1,
        Boolean = 2,
        /** The real name, in text form, of another object. */
        Name = 3
    };

    PropertyValue() = default;
    PropertyValue(const QString& text, Modifiers modifiers = Exact, Type valueType = String)
        : value(text)
        , matchType(modifiers)
        , type(valueType)
    {
    }
    PropertyValue(const QString& text, int modifiers, int valueType)
        : value(text)
        , matchType(modifiers)
        , type(valueType)
    {
    }

    friend bool operator==(const PropertyValue& a, const PropertyValue& b)
    {
        return a.value == b.value && a.matchType == b.matchType && (a.type == Name) == (b.type == Name);
    }
    friend bool operator!=(const PropertyValue& a, const PropertyValue& b) { return !(a == b); }

    QString value;
    /** 1 regular expression, 2 wildcard, anything else exact. */
    int matchType = Exact;
    int type = String;
};

} // namespace Torvix
