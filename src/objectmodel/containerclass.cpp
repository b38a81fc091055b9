#include "objectmodel/containerclass.h"

#include "objectmodel/inspector.h"

namespace Torvix {

ArrayClass::ArrayClass() : Class(nullptr, Protocol::ArrayClassId, QStringLiteral("Array")) {}

const ArrayClass* ArrayClass::registeredClass()
{
    return static_cast<const ArrayClass*>(Inspector::self()->builtinClass(Protocol::ArrayClassId));
}

SharedPtr<Object> ArrayClass::createRemoteObject(const ObjectList& elements)
{
    return new Object(registeredClass(), elements);
}

MapClass::MapClass() : Class(nullptr, Protocol::MapClassId, QStringLiteral("Map")) {}

const MapClass* MapClass::registeredClass()
{
    return static_cast<const MapClass*>(Inspector::self()->builtinClass(Protocol::MapClassId));
}

SharedPtr<Object> MapClass::createRemoteObject(const ObjectEntries& entries)
{
    return new Object(registeredClass(), entries);
}

} // namespace Torvix
