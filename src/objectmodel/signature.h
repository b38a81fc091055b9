#pragma once

#include "objectmodel/export.h"
#include "objectmodel/objectattribute.h"

#include <QString>
#include <QVector>

namespace Torvix {

class Class;
class Enum;

/** One argument of a method or constructor. */
class TORVIXOBJECTMODEL_EXPORT Argument
{
public:
    Argument() = default;
    explicit Argument(const QString& name, const Class* type, ObjectAttribute attribute = {},
                      const Enum* enumeration = nullptr);
    /** Of an enumerated type whose class is fetched when it is first asked for. */
    Argument(const QString& name, const Class* type, ObjectAttribute attribute, const Class* enumOwner,
             const QString& enumName, const QString& defaultValue);

    QString name() const { return m_name; }
    const Class* type() const { return m_type; }
    ObjectAttribute attribute() const { return m_attribute; }
    /** The enumeration link: null when the argument is not of an enumerated type. */
    const Enum* enumeration() const;
    /** As C++ writes it, to show; null string when there is none. */
    QString defaultValue() const { return m_defaultValue; }

    /** The type as C++ writes it: `const QString&`, `QWidget*`, `Qt::Orientation`. */
    QString toString() const;

private:
    QString m_name;
    const Class* m_type = nullptr;
    ObjectAttribute m_attribute;
    mutable const Enum* m_enumeration = nullptr;
    const Class* m_enumOwner = nullptr;
    QString m_enumName;
    QString m_defaultValue;
};

/** The arguments of one overload, in order. An overload with defaults is listed once a count. */
class TORVIXOBJECTMODEL_EXPORT Signature
{
public:
    Signature() = default;
    explicit Signature(const QVector<Argument>& arguments) : m_arguments(arguments) {}

    int count() const { return m_arguments.size(); }
    /** The index must be valid. */
    const Argument& argument(int index) const { return m_arguments.at(index); }
    const QVector<Argument>& arguments() const { return m_arguments; }
    void removeLast() { m_arguments.removeLast(); }

    /** The argument types in parentheses, separated by ", ". */
    QString toString() const;

private:
    QVector<Argument> m_arguments;
};

} // namespace Torvix
