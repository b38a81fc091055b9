// Which operations a C++ class overrides, so that the engine calls back for those only.

#include "engine/jsc/hostclass.h"
#include "engine/jsc/objectaccess.h"
#include "engine/list.h"
#include "engine/reference.h"

namespace KJS::HostClass {

namespace {

/** Its virtual table is the one to compare with. */
class PlainObject : public ObjectImp
{
public:
    static const PlainObject& self()
    {
        static const auto* const plain = new PlainObject;
        return *plain;
    }

private:
    // held for good
    PlainObject() { ref(); }
};

#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
#pragma GCC diagnostic ignored "-Wpmf-conversions"

/** Whether both objects have the same function in that place of their virtual tables. */
template <class Member>
bool overrides(const ObjectImp* object, Member member)
{
    const ObjectImp* const plain = &PlainObject::self();
    auto* const mutableObject = const_cast<ObjectImp*>(object);
    auto* const mutablePlain = const_cast<ObjectImp*>(plain);
    return (void*)(mutableObject->*member) != (void*)(mutablePlain->*member);
}
#pragma GCC diagnostic pop
#else
/** Without the compiler's help each is asked: slower, with the same answers. */
template <class Member>
bool overrides(const ObjectImp*, Member)
{
    return true;
}
#endif

} // namespace

unsigned traitsOf(const ObjectImp* object)
{
    unsigned traits = 0;
    const auto note = [&traits](bool has, Trait trait) { traits |= has ? static_cast<unsigned>(trait) : 0; };
    note(overrides(object, &ObjectImp::get), OverridesGet);
    note(overrides(object, &ObjectImp::put), OverridesPut);
    note(overrides(object, &ObjectImp::hasProperty), OverridesHasProperty);
    note(overrides(object, &ObjectImp::deleteProperty), OverridesDelete);
    note(overrides(object, &ObjectImp::propList), OverridesPropList);
    note(overrides(object, &ObjectImp::defaultValue), OverridesDefaultValue);
    note(overrides(object, &ObjectImp::mark), OverridesMark);
    note(object->implementsCall(), Callable);
    note(object->implementsConstruct(), Constructible);
    note(object->implementsHasInstance(), HasInstance);
    return traits;
}

} // namespace KJS::HostClass
