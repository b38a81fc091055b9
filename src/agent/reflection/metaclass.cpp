#include "agent/reflection/metaclass.h"

#include "agent/reflection/convert.h"
#include "agent/reflection/error.h"
#include "agent/reflection/registry.h"

#include <QMetaEnum>
#include <QMetaType>
#include <QSet>

#include <algorithm>
#include <array>

namespace Torvix::Agent {

namespace {

QString text(const QByteArray& bytes)
{
    return QString::fromUtf8(bytes);
}

/** The object of a call; throws when it is null, was destroyed or is not of the member's class. */
QObject* target(const Value& self, const QMetaObject* meta, const QByteArray& member)
{
    QObject* object = self.object();
    if (!object)
        throw Error(
            QStringLiteral("'%1' needs an object, but it is null or has been destroyed").arg(text(member)));
    if (!meta->cast(object))
        throwWrongType(self, meta->className());
    return object;
}

/** Enums of meta-objects are named with their class: "Shape" of QFrame is "QFrame::Shape". */
QByteArray enumName(const QMetaEnum& metaEnum)
{
    return QByteArray(metaEnum.scope()) + "::" + metaEnum.enumName();
}

/** The enum that a type text in `scope` means, invalid when it means none. */
QMetaEnum enumOf(const QMetaObject* scope, const QByteArray& type)
{
    const int colons = type.lastIndexOf("::");
    const QByteArray name = colons < 0 ? type : type.mid(colons + 2);
    for (const QMetaObject* meta = scope; meta; meta = meta->superClass()) {
        const int index = meta->indexOfEnumerator(name);
        if (index >= 0 && (colons < 0 || type.left(colons) == meta->enumerator(index).scope()))
            return meta->enumerator(index);
    }
    const ClassInfo* declared = colons < 0 ? nullptr : Registry::instance().byName(type.left(colons));
    if (declared && declared->metaObject && declared->metaObject->indexOfEnumerator(name) >= 0)
        return declared->metaObject->enumerator(declared->metaObject->indexOfEnumerator(name));
    const QMetaObject* qt = qt_getQtMetaObject();
    if (type.startsWith("Qt::") && qt->indexOfEnumerator(name) >= 0)
        return qt->enumerator(qt->indexOfEnumerator(name));
    return {};
}

TypeUse typeIn(const QMetaObject* scope, const QByteArray& type)
{
    TypeUse use = TypeUse::parse(type);
    const QMetaEnum metaEnum = enumOf(scope, use.name);
    if (metaEnum.isValid()) {
        use.name = enumName(metaEnum);
        use.isEnum = true;
    } else if (use.name.startsWith("QFlags<")) {
        use.name = use.name.mid(7, use.name.size() - 8);
        use.isEnum = true;
    }
    return use;
}

/** What a pointer to a class points to: a QObject where the class is known to be one. */
Value valueAt(const QByteArray& className, int metaType, void* pointer)
{
    if (!pointer)
        return Value::nullOf(className);
    bool isObject = QMetaType::typeFlags(metaType) & QMetaType::PointerToQObject;
    if (metaType == QMetaType::UnknownType) {
        // Qt knows only the pointer types that somebody has declared to it.
        const ClassInfo* info = Registry::instance().byName(className);
        isObject = info && info->metaObject && info->metaObject->inherits(&QObject::staticMetaObject);
    }
    return isObject ? Value::ofObject(static_cast<QObject*>(pointer)) : Value::ofPointer(className, pointer);
}

bool isPointerList(const QByteArray& type)
{
    return type.startsWith("QList<") && type.endsWith("*>");
}

/** Types that Qt cannot hold in a QVariant are read where their form in memory is known all the same. */
bool isReadableType(const QMetaProperty& property)
{
    const QByteArray type = property.typeName();
    return property.isEnumType() || property.userType() != QMetaType::UnknownType || type.endsWith('*') ||
           isPointerList(type);
}

void readInto(const QMetaProperty& property, QObject* object, void* storage)
{
    void* addresses[] = {storage};
    QMetaObject::metacall(object, QMetaObject::ReadProperty, property.propertyIndex(), addresses);
}

Value readUndeclared(const QMetaProperty& property, QObject* object)
{
    const TypeUse use = TypeUse::parse(property.typeName());
    if (!isPointerList(property.typeName())) {
        void* pointer = nullptr;
        readInto(property, object, &pointer);
        return valueAt(use.name, QMetaType::UnknownType, pointer);
    }
    // Lists of pointers are the same list, whatever the pointers are of.
    QList<void*> pointers;
    readInto(property, object, &pointers);
    QVector<Value> elements;
    for (void* pointer : qAsConst(pointers))
        elements.append(valueAt(use.name, QMetaType::UnknownType, pointer));
    return Value::ofList(use.name, std::move(elements));
}

/** Flags don't convert to int by themselves, but they are one. */
int enumNumber(const QVariant& value)
{
    return value.canConvert<int>() ? value.toInt() : *static_cast<const int*>(value.constData());
}

MethodInfo methodInfo(const QMetaObject* meta, const QMetaMethod& method)
{
    MethodInfo info;
    info.name = method.name();
    const QList<QByteArray> types = method.parameterTypes();
    const QList<QByteArray> names = method.parameterNames();
    for (int i = 0; i < types.size(); ++i)
        info.arguments.push_back({names.value(i), typeIn(meta, types.at(i))});
    info.result = typeIn(meta, method.typeName());
    info.isSignal = method.methodType() == QMetaMethod::Signal;
    info.invoke = [method, described = info](Value& self, const std::vector<Value>& arguments) {
        return invokeMethod(method, described, target(self, method.enclosingMetaObject(), method.name()),
                            arguments);
    };
    return info;
}

/** Whether a binding has the method already, with its default arguments; twice it would be ambiguous. */
bool isBound(const ClassInfo& info, const MethodInfo& method)
{
    const auto sameType = [](const ArgumentInfo& left, const ArgumentInfo& right) {
        const auto indirection = TypeUse::Pointer | TypeUse::List;
        return left.type.name == right.type.name &&
               (left.type.flags & indirection) == (right.type.flags & indirection);
    };
    return std::any_of(info.methods.begin(), info.methods.end(), [&](const MethodInfo& bound) {
        return bound.name == method.name &&
               std::equal(bound.arguments.begin(), bound.arguments.end(), method.arguments.begin(),
                          method.arguments.end(), sameType);
    });
}

PropertyInfo propertyInfo(const QMetaObject* meta, const QMetaProperty& property)
{
    PropertyInfo info;
    info.name = property.name();
    info.type = typeIn(meta, property.typeName());
    info.type.isEnum = info.type.isEnum || property.isEnumType();
    info.isReadable = property.isReadable() && isReadableType(property);
    info.isWritable = property.isWritable();
    info.get = [property](Value& self) {
        return readProperty(property, target(self, property.enclosingMetaObject(), property.name()));
    };
    info.set = [property](Value& self, const Value& value) {
        writeProperty(property, target(self, property.enclosingMetaObject(), property.name()), value);
    };
    return info;
}

/** Storage for one argument that a meta-call reads through a pointer. */
struct Slot
{
    QVariant data;
    void* pointer = nullptr;
    int integer = 0;
    bool isPointer = false;
    bool isInteger = false;

    void* address()
    {
        if (isPointer)
            return &pointer;
        return isInteger ? static_cast<void*>(&integer) : data.data();
    }
};

Slot slotFor(const TypeUse& use, int metaType, const Value& value)
{
    Slot slot;
    const QByteArray type = use.toCpp();
    if (type.endsWith('*')) {
        slot.isPointer = true;
        slot.pointer = pointerTo(value, use.name);
    } else if (use.isEnum || (QMetaType::typeFlags(metaType) & QMetaType::IsEnumeration)) {
        // Enumerations and flags pass as the int that they are, registered or not.
        slot.isInteger = true;
        slot.integer = dataAs(value, QMetaType::Int, type).toInt();
    } else if (metaType == QMetaType::UnknownType) {
        throw Error(QStringLiteral("the argument type %1 is not known").arg(text(type)));
    } else if (metaType == QMetaType::QVariant) {
        slot.data = QVariant(QMetaType::QVariant, nullptr);
        *static_cast<QVariant*>(slot.data.data()) = value.toVariant();
    } else {
        slot.data = dataAs(value, metaType, type);
        slot.data.detach();
    }
    return slot;
}

Value resultOf(const QMetaMethod& method, const TypeUse& use, Slot& slot)
{
    if (slot.isPointer)
        return valueAt(use.name, method.returnType(), slot.pointer);
    if (slot.isInteger || use.isEnum)
        return Value::ofData(use.name, slot.isInteger ? slot.integer : enumNumber(slot.data));
    return Value::ofVariant(slot.data);
}

/** Room for the result; an unknown type that isn't an enum cannot be returned. */
Slot resultSlot(const QMetaMethod& method, const TypeUse& use)
{
    Slot slot;
    const QByteArray type = method.typeName();
    if (type.endsWith('*')) {
        slot.isPointer = true;
    } else if (method.returnType() == QMetaType::UnknownType) {
        if (!use.isEnum)
            throw Error(QStringLiteral("the result type %1 of '%2' is not known")
                            .arg(text(type), text(method.methodSignature())));
        slot.isInteger = true;
    } else if (method.returnType() != QMetaType::Void) {
        slot.data = QVariant(method.returnType(), nullptr);
    }
    return slot;
}

} // namespace

void addMetaMembers(ClassInfo& info)
{
    const QMetaObject* meta = info.metaObject;
    QSet<QByteArray> registered;
    for (const PropertyInfo& property : info.properties)
        registered.insert(property.name);
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        if (!registered.contains(meta->property(i).name()))
            info.properties.push_back(propertyInfo(meta, meta->property(i)));
        // A namespace's meta-object can only be met where one of its enums is used.
        if (meta->property(i).isEnumType())
            Registry::instance().ofMetaObject(meta->property(i).enumerator().enclosingMetaObject());
    }
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        // Private slots are no interface of the class; scripts reach public ones and invokables.
        if (method.access() == QMetaMethod::Private)
            continue;
        MethodInfo described = methodInfo(meta, method);
        if (!isBound(info, described))
            info.methods.push_back(std::move(described));
    }
    for (int i = meta->enumeratorOffset(); i < meta->enumeratorCount(); ++i) {
        const QMetaEnum metaEnum = meta->enumerator(i);
        EnumInfo added{metaEnum.enumName(), metaEnum.isFlag(), {}};
        for (int key = 0; key < metaEnum.keyCount(); ++key)
            added.keys.emplace_back(metaEnum.key(key), metaEnum.value(key));
        info.enums.push_back(std::move(added));
    }
}

Value readProperty(const QMetaProperty& property, QObject* object)
{
    if (!property.isEnumType() && property.userType() == QMetaType::UnknownType && isReadableType(property))
        return readUndeclared(property, object);
    const QVariant value = property.read(object);
    if (!value.isValid() && property.type() != QVariant::Type(QMetaType::QVariant))
        throw Error(QStringLiteral("the property '%1' of type %2 could not be read")
                        .arg(QString::fromLatin1(property.name()), QString::fromLatin1(property.typeName())));
    if (property.isEnumType())
        return Value::ofData(enumName(property.enumerator()), enumNumber(value));
    return Value::ofVariant(value);
}

void writeProperty(const QMetaProperty& property, QObject* object, const Value& value)
{
    QVariant data;
    const int type = property.userType();
    if (property.isEnumType())
        data = dataAs(value, QMetaType::Int, property.typeName()).toInt();
    else if (type == QMetaType::QVariant)
        data = value.toVariant();
    else if (QByteArray(property.typeName()).endsWith('*'))
        data = QVariant(
            type, std::array<void*, 1>{pointerTo(value, TypeUse::parse(property.typeName()).name)}.data());
    else
        data = dataAs(value, type, property.typeName());
    if (!property.write(object, data))
        throw Error(QStringLiteral("the property '%1' refuses the value '%2'")
                        .arg(QString::fromLatin1(property.name()), value.toText()));
}

Value invokeMethod(const QMetaMethod& method, const MethodInfo& info, QObject* object,
                   const std::vector<Value>& arguments)
{
    if (arguments.size() != info.arguments.size())
        throw Error(QStringLiteral("'%1' takes %2 arguments, %3 were given")
                        .arg(text(method.methodSignature()))
                        .arg(info.arguments.size())
                        .arg(arguments.size()));
    Slot result = resultSlot(method, info.result);
    std::vector<Slot> slots(arguments.size());
    std::vector<void*> addresses;
    addresses.push_back(method.returnType() == QMetaType::Void ? nullptr : result.address());
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        slots[i] = slotFor(info.arguments[i].type, method.parameterType(int(i)), arguments[i]);
        addresses.push_back(slots[i].address());
    }
    QMetaObject::metacall(object, QMetaObject::InvokeMetaMethod, method.methodIndex(), addresses.data());
    if (method.returnType() == QMetaType::Void)
        return {};
    return resultOf(method, info.result, result);
}

} // namespace Torvix::Agent
