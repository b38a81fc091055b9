#pragma once

#include "engine/object.h"
#include "engine/objectimp.h"

#include <JavaScriptCore/JavaScript.h>

#include <vector>

namespace KJS {

class ModuleObject;

/** What an object holds before it is one of a script engine's. */
struct ObjectImp::Unborn
{
    struct Property
    {
        Identifier name;
        Value value;
        int attributes = 0;
        Object getter; // value unused when one of these is there
        Object setter;
        bool isAccessor() const { return !getter.isNull() || !setter.isNull(); }
    };

    Object prototype;
    std::vector<Property> properties;
    bool isExtensible = true;

    Property* find(const Identifier& name);
    Property& obtain(const Identifier& name);
};

/** The engine's way into the private half of objects. */
class ObjectAccess
{
public:
    static Runtime* runtime(const ObjectImp* object) { return object->m_runtime; }
    static JSObjectRef reference(const ObjectImp* object)
    {
        return static_cast<JSObjectRef>(object->m_reference);
    }
    static unsigned traits(const ObjectImp* object) { return object->m_traits; }
    static bool isHost(const ObjectImp* object) { return object->m_isHost; }
    static bool isHeld(const ObjectImp* object) { return object->references() > 0; }
    static bool isUnborn(const ObjectImp* object) { return object->m_unborn != nullptr; }
    static ObjectImp::Unborn& unborn(const ObjectImp* object) { return *object->m_unborn; }
    /** Young, or of a view: resting. */
    static bool isYoung(const ObjectImp* object) { return object->m_isYoung; }
    static void setYoung(ObjectImp* object, bool young) { object->m_isYoung = young; }
    static int& rootIndex(ObjectImp* object) { return object->m_rootIndex; }
    static void destroy(ObjectImp* object) { delete object; }

    /** Joins it with the engine's object; hands out what was put before. */
    static std::unique_ptr<ObjectImp::Unborn> bear(ObjectImp* object, Runtime* runtime, JSObjectRef reference,
                                                   unsigned traits);
    /** Its interpreter ends, or its script half was collected. */
    static void detach(ObjectImp* object);

    /** The engine's view of an object of script's, of the C++ class that suits it. */
    static ObjectImp* makeView(Runtime* runtime, JSObjectRef reference, bool isFunction);
    static ObjectImp* makeModuleView(Runtime* runtime, JSObjectRef reference);
};

} // namespace KJS
