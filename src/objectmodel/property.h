#pragma once

#include "objectmodel/member.h"

namespace Torvix {

/** A property of a class. */
class TORVIXOBJECTMODEL_EXPORT Property : public Member
{
public:
    enum Flag { Readable = 1, Writable = 2, Static = 4 };

    /** `type` also carries the property's attribute and enumeration link; its name is the property's. */
    Property(const Class* declaringClass, int index, const Argument& type, int flags);

    QString name() const { return m_type.name(); }
    const Class* type() const { return m_type.type(); }
    ObjectAttribute attribute() const { return m_type.attribute(); }
    const Enum* enumeration() const { return m_type.enumeration(); }

    bool isReadable() const { return (m_flags & Readable) != 0; }
    bool isWritable() const { return (m_flags & Writable) != 0; }
    bool isStatic() const { return (m_flags & Static) != 0; }

    /**
     * The value in the application now, one round trip. A static property takes no object (null).
     */
    Result<SharedPtr<Object>> get(const SharedPtr<Object>& object) const;

    /**
     * The values of several properties of one object, in their order and in one round trip. Null for
     * those that cannot be read.
     */
    static Result<ObjectList> getAll(const SharedPtr<Object>& object,
                                     const QVector<const Property*>& properties);
    /** Those of a class that can be read, the inherited ones too. */
    static QVector<const Property*> readable(const Class* objectClass);

    /** The agent converts the value to the property's type. */
    Result<void> set(const SharedPtr<Object>& object, const SharedPtr<Object>& value) const;

private:
    Argument m_type;
    int m_flags;
};

} // namespace Torvix
