#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <QString>

namespace KJS {

class ObjectImp;

/** Operations of ObjectImp that a class overrides, or whose answer makes it a function. */
enum Trait : unsigned {
    OverridesGet = 1,
    OverridesHasProperty = 2,
    OverridesPut = 4,
    OverridesDelete = 8,
    OverridesPropList = 16,
    OverridesDefaultValue = 32,
    OverridesMark = 64,
    Callable = 128,
    Constructible = 256,
    HasInstance = 512
};

/** The engine's classes for C++ objects: a call-back only where the C++ class has its own operation. */
namespace HostClass {

/** Asked of a complete object, at its birth. */
unsigned traitsOf(const ObjectImp* object);
/** The class that calls those operations back; `className` is what Object.prototype.toString shows. */
JSClassRef obtain(unsigned traits, const QString& className);
/** The C++ half of a value; null when it has none. */
ObjectImp* hostOf(JSContextRef context, JSValueRef value);
/** For a global object behind whose own properties a prototype can be put (see Runtime). */
JSClassRef globalClass();

} // namespace HostClass
} // namespace KJS
