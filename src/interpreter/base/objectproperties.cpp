#include "interpreter/base/objectproperties.h"

#include "interpreter/base/nativescriptobject.h"
#include "interpreter/base/scriptcontext.h"
#include "objectmodel/class.h"
#include "objectmodel/object.h"

namespace Torvix {

namespace {

SharedPtr<ScriptArgument> argumentOf(const ScriptContext& context, const SharedPtr<Object>& object)
{
    switch (object->objectClass()->id()) {
    case Protocol::UIntClass:
    case Protocol::IntClass:
    case Protocol::ShortClass:
    case Protocol::Int64Class:
        return context.toArgument(static_cast<long long>(object->toInt64()));
    case Protocol::BoolClass:
        return context.toArgument(object->toBool());
    case Protocol::StringClass:
        return context.toArgument(object->toString());
    case Protocol::DoubleClass:
        return context.toArgument(object->toDouble());
    case Protocol::VoidClass:
        return context.nullArgument();
    case Protocol::ArrayClassId: {
        ScriptArgument::List list;
        for (const SharedPtr<Object>& element : object->elements())
            list.push_back(argumentOf(context, element));
        return context.toArgument(list);
    }
    case Protocol::MapClassId: {
        ScriptArgument::Map map;
        const ObjectEntries entries = object->entries();
        for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry)
            map[entry.key()] = argumentOf(context, entry.value());
        return context.toArgument(map);
    }
    default:
        return context.toArgument(object);
    }
}

} // namespace

SharedPtr<ScriptArgument> objectPropertiesArgument(const ScriptContext& context,
                                                   const SharedPtr<Object>& object)
{
    ScriptArgument::Map map;
    const Class* objectClass = object->objectClass();
    for (int index = 0; index < objectClass->numProperties(); ++index) {
        const Property* property = objectClass->property(index);
        if (!property->isReadable())
            continue;
        if (const SharedPtr<Object> value = property->get(object))
            map[property->name()] = argumentOf(context, value);
    }
    return context.toArgument(map);
}

} // namespace Torvix
