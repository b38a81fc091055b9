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

Result<SharedPtr<ScriptArgument>> objectPropertiesArgument(const ScriptContext& context,
                                                           const SharedPtr<Object>& object)
{
    const QVector<const Property*> properties = Property::readable(object->objectClass());
    return Property::getAll(object, properties).then([&](const ObjectList& values) {
        ScriptArgument::Map map;
        for (int i = 0; i < properties.size(); ++i)
            if (values[i])
                map[properties[i]->name()] = argumentOf(context, values[i]);
        return context.toArgument(map);
    });
}

} // namespace Torvix
