#pragma once

#include "objectmodel/export.h"
#include "objectmodel/objectattribute.h"
#include "protocol/value.h"
#include "shared/base/result.h"
#include "shared/base/sharedptr.h"

#include <QMap>
#include <QString>
#include <QVector>

namespace Torvix {

class ApplicationModel;
class Class;
class Object;
class ObjectHandle;

using ObjectList = QVector<SharedPtr<Object>>;
using ObjectEntries = QMap<QString, SharedPtr<Object>>;

/**
 * A value of the object model: a number, string or container that lives here, or a reference to
 * an object of an application.
 *
 *     const Result<SharedPtr<Object>> button = Inspector::self()->findObject("{text='OK'}");
 *     if (!button)
 *         return button.failure();
 *     const Property* text = button->objectClass()->property("text");
 *     const Result<SharedPtr<Object>> value = text->get(*button);
 *
 * The last SharedPtr of a reference gives it back to the application. When the object dies or the
 * application ends, the reference stays valid as a value here but is invalidated: everything that
 * would reach the application then fails.
 */
class TORVIXOBJECTMODEL_EXPORT Object : public Shared
{
public:
    /** Bits of statusFlags(). */
    enum Status : quint32 { Valid = 0, Invalidated = 2 };

    ~Object() override;

    /** Never null. */
    const Class* objectClass() const { return m_class; }
    QString className() const;
    /** A null pointer of its class. */
    bool isNull() const;
    ObjectAttribute objectAttribute() const;

    /**
     * Bit 2: the object or its application is gone. News that have arrived are taken into account;
     * does not wait.
     */
    quint32 statusFlags() const;
    bool isInvalidated() const { return (statusFlags() & Invalidated) != 0; }

    /** Id of the application context that the object is of, -1 for a value that lives here. */
    int applicationId() const;
    /** The id by which the agent knows the object, 0 for null and for values that live here. */
    qint64 remoteId() const;

    /**
     * A text for people and for comparison: numbers without superfluous digits, `true` and `false`,
     * a string itself, elements in brackets, `null`; for an object of the application what the agent
     * says (one round trip), a null string when it does not.
     */
    QString toString() const;
    /** Of a number or boolean, else 0. */
    double toDouble() const;
    qint64 toInt64() const;
    int toInt() const { return int(toInt64()); }
    /** Of a boolean; of a number whether it is not 0. */
    bool toBool() const;

    /** Of an ArrayClass object, else empty. */
    ObjectList elements() const;
    /** Of a MapClass object, else empty. */
    ObjectEntries entries() const;

    /** The same object in the application, or equal values. False also on failure. */
    bool compare(const SharedPtr<Object>& other) const;

    /** The symbolic name where the object map has one for it, else the real name. */
    Result<QString> name() const;
    /** A name in text form that finds it; a value that lives here has none. */
    Result<QString> realName() const;

    /** A pointer to this object. */
    SharedPtr<Object> reference() const;
    /** What this pointer or reference stands for; null when it is neither, or null. */
    SharedPtr<Object> dereference() const;

    /**
     * From now on this wrapper has that class. Fails, and nothing has changed, when the object is none
     * of that class (a sub- or superclass of its own).
     */
    Result<void> cast(const Class* target);

    /** What crosses the wire for it; the content of a container stands in elements() and entries(). */
    const Protocol::Value& value() const { return m_value; }

    /** For the object model itself: a value that lives here, a container, a remote object. */
    Object(const Class* objectClass, const Protocol::Value& value);
    Object(const Class* objectClass, const ObjectList& elements);
    Object(const Class* objectClass, const ObjectEntries& entries);
    Object(const Class* objectClass, const Protocol::Value& value, const SharedPtr<ObjectHandle>& handle);

private:
    const Class* m_class;
    Protocol::Value m_value;
    ObjectList m_elements;
    ObjectEntries m_entries;
    SharedPtr<ObjectHandle> m_handle;

    friend class ApplicationModel;
};

} // namespace Torvix
