#pragma once

#include "objectmodel/constructor.h"
#include "objectmodel/enum.h"
#include "objectmodel/method.h"
#include "objectmodel/property.h"
#include "protocol/classmessages.h"

#include <QHash>

#include <memory>
#include <vector>

namespace Torvix {

namespace Protocol {
struct ClassInfo;
struct TypeInfo;
} // namespace Protocol
class Namespace;

/**
 * A class of the application, or one of the built-in types (codes 0 to 9, see Inspector::classById).
 *
 * The description is fetched from the application when a member is first asked for, once; name and
 * id are there before (a class that only an object mentioned is fetched for its name). Each application
 * context has classes of its own, the built-in types are shared by all. A Class lives as long as the
 * inspector, also when its application has gone; two pointers are equal if and only if the classes are the
 * same.
 *
 * Indices of properties, methods and enumerators run over the superclasses first, in order, then
 * over the class's own; names find the nearest declaration.
 */
class TORVIXOBJECTMODEL_EXPORT Class
{
public:
    enum OffsetType {
        SuperClassOffset = 0,
        PropertyOffset = 1,
        MethodOffset = 2,
        ConstructorOffset = 3,
        EnumeratorOffset = 4
    };

    /** For the object model itself. A null application makes a built-in type. */
    Class(ApplicationModel* application, int id, const QString& name);
    virtual ~Class();
    Class(const Class&) = delete;
    Class& operator=(const Class&) = delete;

    int id() const { return m_id; }
    /** With its namespaces: `Ns::Thing`. */
    QString name() const;
    /** The last part of it: `Thing`. */
    QString simpleName() const;
    /** Null for a class outside of any; the global namespace is not used for classes. */
    const Namespace* nameSpace() const;
    ApplicationModel* application() const { return m_application; }
    /** True for objects with an identity and a name, false for value types. */
    bool isIdentity() const;

    int numSuperClasses() const;
    /** Direct superclasses, the chief one first; null beyond. */
    const Class* superClass(int index = 0) const;
    /** How many members of a kind the superclasses hold together: where the own ones begin. */
    int superClassOffset(OffsetType type) const;
    /** Steps from here up to an ancestor, 0 for the class itself, -1 when it is none. */
    int inheritanceDepth(const Class* ancestor) const;

    int numProperties() const;
    const Property* property(int index) const;
    const Property* property(const QString& name) const;

    int numMethods() const;
    const Method* method(int index) const;
    /**
     * All overloads of a name, those of nearer classes first; the inherited ones too, also where a
     * nearer class declares the same arguments.
     */
    QVector<const Method*> methods(const QString& name) const;

    int numConstructors() const;
    const Constructor* constructor(int index) const;

    int numEnumerators() const;
    const Enum* enumerator(int index) const;
    const Enum* enumerator(const QString& name) const;

    /**
     * Whether a value of this class serves as one of the target without a conversion: the same class,
     * an ancestor, or one number type for another (a boolean counts as a number, not the reverse).
     * @param depth conversions that were applied already; with more than one nothing is accepted
     */
    virtual bool canCastTo(const Class* target, bool sourceIndirect, bool targetIndirect, int depth) const;

    /**
     * Whether convertObject() can make a value of the target: all casts; numbers and booleans to
     * strings; what the application registers for value types; a string, being taken for an object
     * name, to a class of objects; the number 0, being taken for null, to a pointer to one.
     */
    virtual bool canConvertTo(const Class* target, bool sourceIndirect, bool targetIndirect, int depth) const;

    /** The object itself when nothing is to be done. */
    virtual Result<SharedPtr<Object>> convertObject(const SharedPtr<Object>& object, const Class* target,
                                                    bool indirect) const;

    /** A null pointer of this class. */
    SharedPtr<Object> createNull() const;

    /** For the object model itself: fills the description, once. */
    void setInfo(const Protocol::ClassInfo& info) const;
    bool isInitialized() const { return m_members != nullptr; }

private:
    struct Members;
    const Members& members() const;
    Argument makeArgument(const QString& name, const Protocol::TypeInfo& type,
                          const QString& defaultValue) const;
    void collectMethods(const QString& name, QVector<const Method*>* found) const;
    bool isNumber() const;

    ApplicationModel* m_application;
    int m_id;
    mutable QString m_name;
    mutable std::unique_ptr<Members> m_members;
};

} // namespace Torvix
