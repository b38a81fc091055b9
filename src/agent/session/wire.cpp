#include "agent/session/wire.h"

#include "agent/reflection/conversions.h"
#include "agent/reflection/error.h"
#include "agent/reflection/registry.h"

#include <QMetaType>
#include <QSet>

namespace Torvix::Agent {

namespace {

struct BuiltinName
{
    const char* name;
    int classId;
};

/** Type names of C++ that are built-in classes on the wire; the first of a class is its own name. */
const BuiltinName builtinNames[] = {
    {"uint", Protocol::UIntClass},
    {"int", Protocol::IntClass},
    {"short", Protocol::ShortClass},
    {"bool", Protocol::BoolClass},
    {"QString", Protocol::StringClass},
    {"double", Protocol::DoubleClass},
    {"qlonglong", Protocol::Int64Class},
    {"void", Protocol::VoidClass},
    {"ArrayClass", Protocol::ArrayClassId},
    {"MapClass", Protocol::MapClassId},
    {"unsigned int", Protocol::UIntClass},
    {"quint32", Protocol::UIntClass},
    {"ushort", Protocol::UIntClass},
    {"unsigned short", Protocol::UIntClass},
    {"uchar", Protocol::UIntClass},
    {"unsigned char", Protocol::UIntClass},
    {"char", Protocol::ShortClass},
    {"signed char", Protocol::ShortClass},
    {"float", Protocol::DoubleClass},
    {"qreal", Protocol::DoubleClass},
    {"long", Protocol::Int64Class},
    {"ulong", Protocol::Int64Class},
    {"long int", Protocol::Int64Class},
    {"long unsigned int", Protocol::Int64Class},
    {"unsigned long", Protocol::Int64Class},
    {"qulonglong", Protocol::Int64Class},
    {"qint64", Protocol::Int64Class},
    {"quint64", Protocol::Int64Class},
    {"WId", Protocol::Int64Class},
    {"QByteArray", Protocol::StringClass},
    {"QChar", Protocol::StringClass},
    {"QStringList", Protocol::StringClass},
    {"QVariantList", Protocol::ArrayClassId},
    {"QByteArrayList", Protocol::ArrayClassId},
    {"QVariantMap", Protocol::MapClassId},
    {"QVariantHash", Protocol::MapClassId},
};

int builtinId(const QByteArray& typeName)
{
    static const QHash<QByteArray, int> ids = [] {
        QHash<QByteArray, int> table;
        for (const BuiltinName& builtin : builtinNames)
            table.insert(builtin.name, builtin.classId);
        return table;
    }();
    return ids.value(typeName, -1);
}

Protocol::Value dataToWire(const Value& value, ObjectTable& table)
{
    using Kind = Protocol::Value::Kind;
    const QVariant& data = value.data;
    switch (data.userType()) {
    case QMetaType::Bool:
        return Protocol::Value::ofBool(data.toBool());
    case QMetaType::Int:
        return Protocol::Value::ofInt(data.toInt());
    case QMetaType::UInt:
    case QMetaType::UShort:
    case QMetaType::UChar:
        return Protocol::Value::ofInt(data.toUInt(), Kind::UInt);
    case QMetaType::Short:
    case QMetaType::SChar:
        return Protocol::Value::ofInt(data.toInt(), Kind::Short);
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Long:
    case QMetaType::ULong:
        return Protocol::Value::ofInt(data.toLongLong(), Kind::Int64);
    case QMetaType::Double:
    case QMetaType::Float:
        return Protocol::Value::ofDouble(data.toDouble());
    case QMetaType::Char:
    case QMetaType::QChar:
    case QMetaType::QString:
    case QMetaType::QByteArray:
        return Protocol::Value::ofString(data.toString());
    case QMetaType::Nullptr:
        return Protocol::Value::ofObject({});
    default:
        return Protocol::Value::ofObject(toReference(value, table));
    }
}

Protocol::TypeInfo describeType(const TypeUse& use)
{
    Protocol::TypeInfo type;
    const bool isText = use.name == "QStringList";
    // A sequence of anything but texts is an array of values.
    type.classId = use.flags & TypeUse::List ? int(Protocol::ArrayClassId) : classIdOf(use.name);
    if (use.flags & TypeUse::Constant)
        type.attribute.flags |= Protocol::ConstantFlag;
    if (!(use.flags & TypeUse::List) && (use.flags & (TypeUse::Pointer | TypeUse::Reference))) {
        type.attribute.flags |= Protocol::IndirectFlag;
        type.attribute.extra = 1;
    }
    if (isText)
        type.attribute.flags |= Protocol::ListFlag;
    if (use.isEnum && !(use.flags & TypeUse::List)) {
        const int colons = use.name.lastIndexOf("::");
        type.classId = Protocol::IntClass;
        type.enumClassId = colons < 0 ? -1 : classIdOf(use.name.left(colons));
        type.enumName = QString::fromLatin1(use.name.mid(colons < 0 ? 0 : colons + 2));
    }
    return type;
}

QVector<Protocol::ArgumentInfo> describeArguments(const std::vector<ArgumentInfo>& arguments)
{
    QVector<Protocol::ArgumentInfo> described;
    for (const ArgumentInfo& argument : arguments)
        described.append({QString::fromLatin1(argument.name), describeType(argument.type), {}});
    return described;
}

Protocol::ClassLink linkTo(const QByteArray& name)
{
    return {classIdOf(name), QString::fromLatin1(name)};
}

Protocol::PropertyInfo describeProperty(const PropertyInfo& property)
{
    quint32 flags = 0;
    if (property.isReadable)
        flags |= Protocol::ReadableProperty;
    if (property.isWritable)
        flags |= Protocol::WritableProperty;
    if (property.isStatic)
        flags |= Protocol::StaticProperty;
    return {QString::fromLatin1(property.name), describeType(property.type), flags};
}

Protocol::EnumInfo describeEnum(const EnumInfo& info)
{
    Protocol::EnumInfo described{QString::fromLatin1(info.name), info.isFlag, {}};
    for (const auto& [key, value] : info.keys)
        described.keys.append({QString::fromLatin1(key), value});
    return described;
}

Protocol::ClassInfo describeOne(const ClassInfo& info)
{
    Protocol::ClassInfo described;
    described.self = {info.id, QString::fromLatin1(info.name)};
    const int colons = info.name.lastIndexOf("::");
    if (colons >= 0)
        described.namespaceName = QString::fromLatin1(info.name.left(colons));
    if (info.metaObject && info.metaObject->inherits(&QObject::staticMetaObject))
        described.flags |= Protocol::IdentityClass;
    for (const QByteArray& base : info.superClasses)
        described.superClasses.append(linkTo(base));
    for (const PropertyInfo& property : info.properties)
        described.properties.append(describeProperty(property));
    for (const MethodInfo& method : info.methods)
        described.methods.append({QString::fromLatin1(method.name),
                                  describeType(method.result),
                                  describeArguments(method.arguments),
                                  method.isStatic ? quint32(Protocol::StaticMethod) : 0u,
                                  {}});
    for (const MethodInfo& constructor : info.constructors)
        described.constructors.append({describeArguments(constructor.arguments)});
    for (const EnumInfo& enumeration : info.enums)
        described.enumerators.append(describeEnum(enumeration));
    for (const QByteArray& source : convertibleFrom(info.name))
        described.convertibleFrom.append(classIdOf(source));
    for (const QByteArray& target : convertibleTo(info.name))
        described.convertibleTo.append(classIdOf(target));
    return described;
}

void collectIds(const Protocol::ClassInfo& info, QSet<int>& ids)
{
    const auto add = [&ids](const Protocol::TypeInfo& type) {
        ids.insert(type.classId);
        ids.insert(type.enumClassId);
    };
    for (const auto& property : info.properties)
        add(property.type);
    for (const auto& method : info.methods) {
        add(method.result);
        for (const auto& argument : method.arguments)
            add(argument.type);
    }
    for (const auto& constructor : info.constructors)
        for (const auto& argument : constructor.arguments)
            add(argument.type);
    for (const int id : info.convertibleFrom + info.convertibleTo)
        ids.insert(id);
}

void describeWithBases(const ClassInfo& info, Protocol::ClassReply& reply, QSet<int>& seen)
{
    if (seen.contains(info.id))
        return;
    seen.insert(info.id);
    reply.classes.append(describeOne(info));
    for (const QByteArray& base : info.superClasses)
        if (const ClassInfo* next = Registry::instance().byName(base))
            describeWithBases(*next, reply, seen);
}

} // namespace

int builtinClassId(const QByteArray& typeName)
{
    return builtinId(typeName);
}

int classIdOf(const QByteArray& typeName)
{
    const int builtin = builtinId(typeName);
    if (builtin >= 0)
        return builtin;
    if (const ClassInfo* known = Registry::instance().byName(typeName))
        return known->id;
    return Registry::instance().define(typeName, {}).id;
}

QByteArray classNameOf(int classId)
{
    if (classId >= 0 && classId <= Protocol::MapClassId)
        return builtinNames[classId].name;
    const ClassInfo* info = Registry::instance().byId(classId);
    return info ? info->name : QByteArray();
}

Protocol::ObjectRef toReference(const Value& value, ObjectTable& table)
{
    Protocol::ObjectRef reference;
    reference.id = table.add(value);
    const QObject* object = value.object();
    reference.classId =
        object ? Registry::instance().ofMetaObject(object->metaObject()).id : classIdOf(value.typeName);
    if (value.isPointer()) {
        reference.attribute.flags = Protocol::IndirectFlag;
        reference.attribute.extra = 1;
    }
    return reference;
}

Protocol::Value toWire(const Value& value, ObjectTable& table)
{
    switch (value.kind) {
    case Value::Kind::None:
        return {};
    case Value::Kind::Data:
        return dataToWire(value, table);
    case Value::Kind::Pointer:
        return Protocol::Value::ofObject(toReference(value, table));
    case Value::Kind::List: {
        QVector<Protocol::Value> elements;
        for (const Value& element : value.list)
            elements.append(toWire(element, table));
        return Protocol::Value::ofArray(elements);
    }
    case Value::Kind::Map: {
        QMap<QString, Protocol::Value> entries;
        for (auto it = value.map.begin(); it != value.map.end(); ++it)
            entries.insert(it.key(), toWire(it.value(), table));
        return Protocol::Value::ofMap(entries);
    }
    }
    return {};
}

Value fromWire(const Protocol::Value& value, ObjectTable& table)
{
    using Kind = Protocol::Value::Kind;
    switch (value.kind) {
    case Kind::Void:
        return {};
    case Kind::UInt:
        return Value::ofData("uint", QVariant(uint(value.integer)));
    case Kind::Int:
    case Kind::Short:
        return Value::ofData("int", QVariant(int(value.integer)));
    case Kind::Int64:
        return Value::ofData("qlonglong", QVariant(qlonglong(value.integer)));
    case Kind::Bool:
        return Value::ofData("bool", QVariant(value.integer != 0));
    case Kind::Double:
        return Value::ofData("double", QVariant(value.number));
    case Kind::String:
        return Value::ofData("QString", QVariant(value.text));
    case Kind::Array: {
        QVector<Value> elements;
        for (const Protocol::Value& element : value.elements)
            elements.append(fromWire(element, table));
        return Value::ofList("QVariantList", elements);
    }
    case Kind::Map: {
        Value result;
        result.kind = Value::Kind::Map;
        result.typeName = "QVariantMap";
        for (auto it = value.entries.begin(); it != value.entries.end(); ++it)
            result.map.insert(it.key(), fromWire(it.value(), table));
        return result;
    }
    case Kind::Object:
        return value.object.id ? table.at(value.object.id) : Value::nullOf(classNameOf(value.object.classId));
    }
    return {};
}

std::vector<Value> fromWire(const QVector<Protocol::Value>& values, ObjectTable& table)
{
    std::vector<Value> result;
    for (const Protocol::Value& value : values)
        result.push_back(fromWire(value, table));
    return result;
}

Protocol::ClassReply describe(const ClassInfo& info)
{
    Protocol::ClassReply reply;
    QSet<int> seen;
    describeWithBases(info, reply, seen);
    QSet<int> mentioned;
    for (const Protocol::ClassInfo& described : reply.classes)
        collectIds(described, mentioned);
    for (const int id : mentioned - seen)
        if (id >= 0)
            reply.mentioned.append({id, QString::fromLatin1(classNameOf(id))});
    return reply;
}

} // namespace Torvix::Agent
