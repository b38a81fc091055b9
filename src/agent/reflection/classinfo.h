#pragma once

#include "agent/reflection/value.h"

#include <QByteArrayList>

#include <functional>
#include <utility>
#include <vector>

struct QMetaObject;

namespace Torvix::Agent {

struct ArgumentInfo
{
    QByteArray name;
    TypeUse type;
};

/** A method, a static function or a constructor. `self` is None for the latter two. */
struct MethodInfo
{
    QByteArray name;
    std::vector<ArgumentInfo> arguments;
    TypeUse result;
    bool isStatic = false;
    bool isSignal = false;
    std::function<Value(Value& self, const std::vector<Value>& arguments)> invoke;

    QByteArray signature() const;
};

struct PropertyInfo
{
    QByteArray name;
    TypeUse type;
    bool isReadable = true;
    bool isWritable = false;
    bool isStatic = false;
    std::function<Value(Value& self)> get;
    std::function<void(Value& self, const Value& value)> set;
};

struct EnumInfo
{
    QByteArray name;
    bool isFlag = false;
    std::vector<std::pair<QByteArray, int>> keys;
};

/** One class as scripts see it: own members only, the inherited ones are those of its bases. */
struct ClassInfo
{
    int id = 0;
    QByteArray name;
    QByteArrayList superClasses;
    const QMetaObject* metaObject = nullptr;
    /** Values of it are copied rather than pointed to. */
    bool isValue = false;
    /** Where the class lies in a QObject that inherits it beside QObject; null for all other classes. */
    std::function<void*(const Value& object)> addressIn;
    /** Makes what tells whether a pointer of the class is still good, see Bind::guard(); may be null. */
    std::function<std::function<bool()>(void* object)> makeGuard;
    std::vector<PropertyInfo> properties;
    std::vector<MethodInfo> methods;
    std::vector<MethodInfo> constructors;
    std::vector<EnumInfo> enums;
};

} // namespace Torvix::Agent
