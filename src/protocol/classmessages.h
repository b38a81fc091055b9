#pragma once

#include "protocol/message.h"
#include "protocol/value.h"

#include <QString>
#include <QVector>

/**
 * Descriptions of classes, asked for once each. Members are addressed by the class that declares
 * them and their position in its description, so that a description never changes once it was sent.
 * Inherited members are not repeated.
 */
namespace Torvix::Protocol {

/** A class that is mentioned; its description is fetched when its members are needed. */
struct ClassLink
{
    int id = VoidClass;
    /** With its namespaces: `Ns::Thing`. */
    QString name;
    TORVIX_WIRE_FIELDS(id, name)
};

/** The type of an argument, a property or a result. */
struct TypeInfo
{
    int classId = VoidClass;
    Attribute attribute;
    /** An enumerated type has class id 1, and names the class that declares it, else -1 and "". */
    int enumClassId = -1;
    QString enumName;
    TORVIX_WIRE_FIELDS(classId, attribute, enumClassId, enumName)
};

struct ArgumentInfo
{
    QString name;
    TypeInfo type;
    /** As C++ writes it, to show only: an overload with defaults is listed once for each count. */
    QString defaultValue;
    TORVIX_WIRE_FIELDS(name, type, defaultValue)
};

enum PropertyFlag : quint32 { ReadableProperty = 1, WritableProperty = 2, StaticProperty = 4 };

struct PropertyInfo
{
    QString name;
    TypeInfo type;
    quint32 flags = ReadableProperty;
    TORVIX_WIRE_FIELDS(name, type, flags)
};

enum MethodFlag : quint32 { StaticMethod = 1 };

struct MethodInfo
{
    QString name;
    TypeInfo result;
    QVector<ArgumentInfo> arguments;
    quint32 flags = 0;
    /** Why the method should not be used any more; empty when it may be. */
    QString deprecation;
    TORVIX_WIRE_FIELDS(name, result, arguments, flags, deprecation)
};

struct ConstructorInfo
{
    QVector<ArgumentInfo> arguments;
    TORVIX_WIRE_FIELDS(arguments)
};

struct EnumKey
{
    QString name;
    int value = 0;
    TORVIX_WIRE_FIELDS(name, value)
};

struct EnumInfo
{
    QString name;
    bool isFlag = false;
    QVector<EnumKey> keys;
    TORVIX_WIRE_FIELDS(name, isFlag, keys)
};

enum ClassFlag : quint32 {
    /** Objects with an identity and a name (QObject); otherwise a value type. */
    IdentityClass = 1
};

struct ClassInfo
{
    ClassLink self;
    /** Of the namespace, "" for the global one. */
    QString namespaceName;
    quint32 flags = 0;
    /** Direct superclasses, the chief one first. */
    QVector<ClassLink> superClasses;
    QVector<PropertyInfo> properties;
    QVector<MethodInfo> methods;
    QVector<ConstructorInfo> constructors;
    QVector<EnumInfo> enumerators;
    /** Ids of classes whose values convert to this class, and into which its values convert. */
    QVector<int> convertibleFrom;
    QVector<int> convertibleTo;
    TORVIX_WIRE_FIELDS(self, namespaceName, flags, superClasses, properties, methods, constructors,
                       enumerators, convertibleFrom, convertibleTo)
};

/** The class that was asked for first, then all its superclasses; empty when there is none. */
struct ClassReply
{
    QVector<ClassInfo> classes;
    /** Names of all classes that the descriptions mention by id only. */
    QVector<ClassLink> mentioned;
    TORVIX_WIRE_FIELDS(classes, mentioned)
};

struct ClassById
{
    static constexpr auto number = RequestNumber::ClassById;
    using Reply = ClassReply;
    int id = 0;
    TORVIX_WIRE_FIELDS(id)
};

struct ClassByName
{
    static constexpr auto number = RequestNumber::ClassByName;
    using Reply = ClassReply;
    QString name;
    TORVIX_WIRE_FIELDS(name)
};

/** The class whose members are global functions, properties and constants; empty when none. */
struct GlobalClass : Empty
{
    static constexpr auto number = RequestNumber::GlobalClass;
    using Reply = ClassReply;
};

struct NamespaceReply
{
    bool found = false;
    QString name;
    TORVIX_WIRE_FIELDS(found, name)
};

/** Found when some known class lies in it or below it. */
struct NamespaceByName
{
    static constexpr auto number = RequestNumber::NamespaceByName;
    using Reply = NamespaceReply;
    QString name;
    TORVIX_WIRE_FIELDS(name)
};

} // namespace Torvix::Protocol
