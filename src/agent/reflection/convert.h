#pragma once

#include "agent/reflection/error.h"
#include "agent/reflection/typename.h"
#include "agent/reflection/value.h"

#include <QObject>

namespace Torvix::Agent {

/** Throws that `value` is no `wanted`. */
[[noreturn]] void throwWrongType(const Value& value, const QByteArray& wanted);

/**
 * The address of an object of the class `className` that `value` points to or holds, null for a null
 * pointer. Throws when it is of another class or has been destroyed.
 */
void* pointerTo(const Value& value, const QByteArray& className);

/** `value` as the QVariant type `type`; throws when it doesn't convert. */
QVariant dataAs(const Value& value, int type, const QByteArray& wanted);

template <class T>
T fromValue(const Value& value);

template <class T>
T* pointerFromValue(const Value& value)
{
    if constexpr (std::is_base_of_v<QObject, T>) {
        if (value.isNone() || (value.isPointer() && !value.isObject()) || !value.isPointer())
            return static_cast<T*>(pointerTo(value, TypeName<T>::get()));
        QObject* object = value.object();
        T* result = qobject_cast<T*>(object);
        if (object && !result)
            throwWrongType(value, TypeName<T>::get());
        return result;
    } else {
        return static_cast<T*>(pointerTo(value, TypeName<T>::get()));
    }
}

template <class L>
L listFromValue(const Value& value)
{
    if (value.kind != Value::Kind::List)
        throwWrongType(value, "list");
    L result;
    for (const Value& element : value.list)
        result.append(fromValue<typename L::value_type>(element));
    return result;
}

/** The C++ value that an argument stands for; throws Error when it doesn't fit. */
template <class T>
T fromValue(const Value& value)
{
    if constexpr (std::is_pointer_v<T>) {
        return pointerFromValue<std::remove_cv_t<std::remove_pointer_t<T>>>(value);
    } else if constexpr (std::is_enum_v<T>) {
        return T(dataAs(value, QMetaType::Int, TypeName<T>::get()).toInt());
    } else if constexpr (IsFlags<T>::value) {
        return T(QFlag(dataAs(value, QMetaType::Int, TypeName<T>::get()).toInt()));
    } else if constexpr (std::is_same_v<T, QVariant>) {
        return value.toVariant();
    } else if constexpr (IsList<T>::value) {
        return listFromValue<T>(value);
    } else {
        return dataAs(value, qMetaTypeId<T>(), TypeName<T>::get()).template value<T>();
    }
}

/** A result of the application. Pointers to QObjects carry the class that they really are. */
template <class T>
Value toValue(const T& result)
{
    if constexpr (std::is_pointer_v<T>) {
        using Target = std::remove_cv_t<std::remove_pointer_t<T>>;
        if (!result)
            return Value::nullOf(TypeName<Target>::get());
        if constexpr (std::is_base_of_v<QObject, Target>)
            return Value::ofObject(const_cast<Target*>(result));
        else
            return Value::ofPointer(TypeName<Target>::get(), const_cast<Target*>(result));
    } else if constexpr (std::is_enum_v<T>) {
        return Value::ofData(TypeName<T>::get(), int(result));
    } else if constexpr (IsFlags<T>::value) {
        return Value::ofData(TypeName<T>::get(), int(typename T::Int(result)));
    } else if constexpr (std::is_same_v<T, QVariant>) {
        return Value::ofVariant(result);
    } else if constexpr (std::is_same_v<T, QStringList> || std::is_same_v<T, QVariantList> ||
                         std::is_same_v<T, QVariantMap>) {
        return Value::ofVariant(QVariant::fromValue(result));
    } else if constexpr (IsList<T>::value) {
        QVector<Value> elements;
        for (const auto& element : result)
            elements.append(toValue(element));
        return Value::ofList(TypeName<typename T::value_type>::get(), std::move(elements));
    } else if constexpr (std::is_same_v<T, Value>) {
        return result;
    } else {
        return Value::ofData(TypeName<T>::get(), QVariant::fromValue(result));
    }
}

} // namespace Torvix::Agent
