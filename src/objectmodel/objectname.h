#pragma once

#include "objectmodel/propertyvalue.h"
#include "protocol/namecondition.h"
#include "shared/base/result.h"

#include <QMap>

namespace Torvix {

class ObjectMap;

/**
 * A real name: the conditions that an object meets, by property.
 *
 * The text form, as people write it (docs/object-names.md has the whole of it):
 *
 *     {type='QPushButton' text='OK' window={type='QDialog' windowTitle~='Save.*'} visible=true}
 *
 * `=` exact, `*=` wildcard, `~=` regular expression. Names are equal whatever the order of their
 * conditions; toString() sorts them, `type` and `name` first.
 */
class TORVIXOBJECTMODEL_EXPORT ObjectName
{
public:
    ObjectName() = default;
    explicit ObjectName(const QMap<QString, PropertyValue>& properties) : m_properties(properties) {}

    /** Reads the text form. A failure says what is wrong and where; columns count from 1. */
    static Result<ObjectName> fromString(const QString& text);
    /** True when the text is meant as a real name: it begins with a brace. */
    static bool isRealName(const QString& text);

    bool isEmpty() const { return m_properties.isEmpty(); }
    const QMap<QString, PropertyValue>& properties() const { return m_properties; }
    void set(const QString& property, const PropertyValue& value) { m_properties.insert(property, value); }

    /** Keys whose value names another object: `window`, `container` and `buddy`. */
    static bool isRelation(const QString& property);

    QString toString() const;

    /**
     * For the wire. Symbolic names in relations are looked up in the map (null: none is known).
     * Fails for an unknown symbolic name, one that contains itself, a bad regular expression, and where
     * this name or one inside it is empty: that would match any object.
     */
    Result<Protocol::NameConditions> toConditions(const ObjectMap* map) const;
    static ObjectName fromConditions(const Protocol::NameConditions& conditions);

    friend bool operator==(const ObjectName& a, const ObjectName& b)
    {
        return a.m_properties == b.m_properties;
    }
    friend bool operator!=(const ObjectName& a, const ObjectName& b) { return !(a == b); }

private:
    QMap<QString, PropertyValue> m_properties;
};

} // namespace Torvix
