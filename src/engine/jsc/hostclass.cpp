#include "engine/jsc/hostclass.h"

#include "engine/jsc/heap.h"
#include "engine/jsc/identifiertable.h"
#include "engine/jsc/objectaccess.h"
#include "engine/jsc/runtime.h"
#include "engine/jsc/valueaccess.h"
#include "engine/list.h"
#include "engine/reference.h"

#include <cstring>
#include <map>

namespace KJS::HostClass {

namespace {

ObjectImp* implementation(JSObjectRef object)
{
    return static_cast<ObjectImp*>(JSObjectGetPrivate(object));
}

/** The C++ half while it can be asked: not while it is being born, not after its interpreter's end. */
Runtime* runtimeOf(const ObjectImp* imp)
{
    return imp ? ObjectAccess::runtime(imp) : nullptr;
}

/**
 * The engine hands symbol keys to call-backs as their descriptions. Those of the language itself are
 * told by their form; no C++ class has properties of such names.
 */
bool isLanguageSymbol(JSStringRef name)
{
    constexpr std::size_t prefixLength = 7;
    static const JSChar prefix[prefixLength] = {'S', 'y', 'm', 'b', 'o', 'l', '.'};
    return JSStringGetLength(name) > prefixLength &&
           std::memcmp(JSStringGetCharactersPtr(name), prefix, sizeof prefix) == 0;
}

/**
 * Runs native code for script: exec state, C++ exceptions, objects left behind. What `action(exec)`
 * answers counts unless there is an exception.
 */
template <class Action>
auto native(Runtime& runtime, JSValueRef* exception, Action action) -> decltype(action(nullptr))
{
    decltype(action(nullptr)) result = {};
    NativeScope scope(runtime);
    try {
        result = action(scope.exec());
        scope.passException(exception);
        if (exception) {
            if (const JSValueRef stopped = runtime.stopIfInterrupted())
                *exception = stopped;
        }
    } catch (...) {
        const JSValueRef carried = runtime.script().carryCurrentException();
        if (exception)
            *exception = carried;
    }
    return result;
}

class LookupScope
{
public:
    LookupScope(Runtime& runtime, PendingLookup& lookup) : m_runtime(runtime), m_lookup(lookup)
    {
        lookup.outer = runtime.pendingLookup();
        runtime.pendingLookup() = &lookup;
    }
    ~LookupScope() { m_runtime.pendingLookup() = m_lookup.outer; }
    LookupScope(const LookupScope&) = delete;
    LookupScope& operator=(const LookupScope&) = delete;

private:
    Runtime& m_runtime;
    PendingLookup& m_lookup;
};

// Properties ------------------------------------------------------------------------------------

JSValueRef getProperty(JSContextRef, JSObjectRef object, JSStringRef name, JSValueRef* exception)
{
    const ObjectImp* const imp = implementation(object);
    Runtime* const runtime = runtimeOf(imp);
    if (!runtime || runtime->isDefining(imp) || runtime->takeBypass(imp) || isLanguageSymbol(name))
        return nullptr;
    const Identifier identifier = IdentifierEntry::fromCallback(name);
    return native(*runtime, exception, [&](ExecState* exec) -> JSValueRef {
        PendingLookup lookup;
        lookup.object = imp;
        lookup.name = &identifier;
        const LookupScope scope(*runtime, lookup);
        const Value value = imp->get(exec, identifier);
        if (exec->hadException())
            return nullptr;
        // what the ordinary look-up has found is left to the engine: it knows whose it is, and how
        if (lookup.baseAsked && value.isSame(lookup.baseValue))
            return nullptr;
        const bool isThere = !value.isNull() && !value.isUndefined();
        return isThere ? ValueAccess::toScript(*runtime, exec, value) : nullptr;
    });
}

bool hasProperty(JSContextRef, JSObjectRef object, JSStringRef name)
{
    const ObjectImp* const imp = implementation(object);
    Runtime* const runtime = runtimeOf(imp);
    if (!runtime || runtime->isBypassed(imp) || isLanguageSymbol(name))
        return false;
    const Identifier identifier = IdentifierEntry::fromCallback(name);
    return native(*runtime, nullptr, [&](ExecState* exec) {
        PendingLookup lookup;
        lookup.object = imp;
        lookup.name = &identifier;
        const LookupScope scope(*runtime, lookup);
        const bool has = imp->hasProperty(exec, identifier);
        return has && !(lookup.baseAsked && lookup.baseHas);
    });
}

/** For a name that hasProperty has claimed: here "not there" is no answer. */
JSValueRef getClaimedProperty(JSContextRef context, JSObjectRef object, JSStringRef name,
                              JSValueRef* exception)
{
    const ObjectImp* const imp = implementation(object);
    Runtime* const runtime = runtimeOf(imp);
    if (!runtime)
        return JSValueMakeUndefined(context);
    const Identifier identifier = IdentifierEntry::fromCallback(name);
    const JSValueRef value = native(*runtime, exception, [&](ExecState* exec) {
        return ValueAccess::toScript(*runtime, exec, imp->get(exec, identifier));
    });
    return value ? value : JSValueMakeUndefined(context);
}

bool setProperty(JSContextRef, JSObjectRef object, JSStringRef name, JSValueRef value, JSValueRef* exception)
{
    ObjectImp* const imp = implementation(object);
    Runtime* const runtime = runtimeOf(imp);
    if (!runtime || runtime->isOrdinaryPut(imp, name, value) || isLanguageSymbol(name))
        return false;
    const Identifier identifier = IdentifierEntry::fromCallback(name);
    return native(*runtime, exception, [&](ExecState* exec) {
        imp->put(exec, identifier, ValueAccess::fromScript(*runtime, value));
        return true;
    });
}

bool deleteProperty(JSContextRef, JSObjectRef object, JSStringRef name, JSValueRef* exception)
{
    ObjectImp* const imp = implementation(object);
    Runtime* const runtime = runtimeOf(imp);
    if (!runtime || runtime->takeBypass(imp) || isLanguageSymbol(name))
        return false;
    const Identifier identifier = IdentifierEntry::fromCallback(name);
    // an answer of false goes on to the ordinary deletion
    return native(*runtime, exception,
                  [&](ExecState* exec) { return imp->deleteProperty(exec, identifier); });
}

void getPropertyNames(JSContextRef, JSObjectRef object, JSPropertyNameAccumulatorRef names)
{
    ObjectImp* const imp = implementation(object);
    Runtime* const runtime = runtimeOf(imp);
    if (!runtime || runtime->takeBypass(imp))
        return;
    native(*runtime, nullptr, [&](ExecState* exec) {
        const ObjectImp* const outer = runtime->listing();
        runtime->listing() = imp;
        const ReferenceList added = imp->propList(exec, false);
        runtime->listing() = outer;
        for (const Reference& reference : added)
            JSPropertyNameAccumulatorAddName(names, IdentifierEntry::keyOf(reference.getPropertyName(exec)));
        return true;
    });
}

JSValueRef convertToType(JSContextRef, JSObjectRef object, JSType type, JSValueRef* exception)
{
    const ObjectImp* const imp = implementation(object);
    Runtime* const runtime = runtimeOf(imp);
    if (!runtime || (type != kJSTypeNumber && type != kJSTypeString))
        return nullptr;
    return native(*runtime, exception, [&](ExecState* exec) {
        const Value value = imp->defaultValue(exec, type == kJSTypeNumber ? NumberType : StringType);
        return ValueAccess::toScript(*runtime, exec, value);
    });
}

// Calls -----------------------------------------------------------------------------------------

List argumentList(Runtime& runtime, std::size_t count, const JSValueRef values[])
{
    List list;
    list.reserve(static_cast<int>(count));
    for (std::size_t i = 0; i < count; ++i)
        list.append(ValueAccess::fromScript(runtime, values[i]));
    return list;
}

JSValueRef callAsFunction(JSContextRef context, JSObjectRef function, JSObjectRef thisObject,
                          std::size_t count, const JSValueRef arguments[], JSValueRef* exception)
{
    ObjectImp* const imp = implementation(function);
    Runtime* const runtime = runtimeOf(imp);
    if (!runtime)
        return JSValueMakeUndefined(context);
    const JSValueRef result = native(*runtime, exception, [&](ExecState* exec) {
        const List list = argumentList(*runtime, count, arguments);
        Object receiver = ValueAccess::fromScript(*runtime, thisObject);
        const Value value = imp->call(exec, receiver, list);
        return ValueAccess::toScript(*runtime, exec, value);
    });
    return result ? result : JSValueMakeUndefined(context);
}

JSObjectRef callAsConstructor(JSContextRef, JSObjectRef constructor, std::size_t count,
                              const JSValueRef arguments[], JSValueRef* exception)
{
    ObjectImp* const imp = implementation(constructor);
    Runtime* const runtime = runtimeOf(imp);
    if (!runtime)
        return nullptr;
    return native(*runtime, exception, [&](ExecState* exec) -> JSObjectRef {
        const Object made = imp->construct(exec, argumentList(*runtime, count, arguments));
        if (made.isNull() && !exec->hadException())
            exec->setException(Error::create(exec, TypeError, UString("The constructor made no object")));
        return ValueAccess::toScript(*runtime, exec, made);
    });
}

bool hasInstance(JSContextRef, JSObjectRef constructor, JSValueRef value, JSValueRef* exception)
{
    ObjectImp* const imp = implementation(constructor);
    Runtime* const runtime = runtimeOf(imp);
    return runtime && native(*runtime, exception, [&](ExecState* exec) {
               return imp->hasInstance(exec, ValueAccess::fromScript(*runtime, value));
           });
}

/** Amid a collection: the C++ half is only noted, and destroyed at the next safe point. */
void finalize(JSObjectRef object)
{
    ObjectImp* const imp = implementation(object);
    if (imp && ObjectAccess::reference(imp) == object)
        ObjectAccess::runtime(imp)->collected(imp);
}

// Classes ---------------------------------------------------------------------------------------

JSClassDefinition emptyDefinition()
{
    JSClassDefinition definition = kJSClassDefinitionEmpty;
    definition.attributes = kJSClassAttributeNoAutomaticPrototype;
    definition.className = "Object";
    return definition;
}

JSClassRef rootClass()
{
    static const JSClassRef root = [] {
        JSClassDefinition definition = emptyDefinition();
        definition.finalize = finalize;
        return JSClassCreate(&definition);
    }();
    return root;
}

JSClassRef make(unsigned traits, const QByteArray& className)
{
    JSClassDefinition definition = emptyDefinition();
    definition.className = className.constData();
    definition.parentClass = rootClass();
    if (traits & (OverridesGet | OverridesHasProperty))
        definition.getProperty = getProperty;
    if (traits & OverridesPut)
        definition.setProperty = setProperty;
    if (traits & OverridesDelete)
        definition.deleteProperty = deleteProperty;
    if (traits & OverridesPropList)
        definition.getPropertyNames = getPropertyNames;
    if (traits & OverridesDefaultValue)
        definition.convertToType = convertToType;
    if (traits & Callable)
        definition.callAsFunction = callAsFunction;
    if (traits & Constructible)
        definition.callAsConstructor = callAsConstructor;
    if (traits & HasInstance)
        definition.hasInstance = hasInstance;
    const JSClassRef made = JSClassCreate(&definition);
    if (!(traits & OverridesHasProperty))
        return made;
    // The engine asks the derived class first: a name that hasProperty claims is there without being
    // read. Others go on to the base class, whose getProperty may still have a value.
    JSClassDefinition claiming = emptyDefinition();
    claiming.className = className.constData();
    claiming.parentClass = made;
    claiming.hasProperty = hasProperty;
    claiming.getProperty = getClaimedProperty;
    return JSClassCreate(&claiming);
}

} // namespace

JSClassRef obtain(unsigned traits, const QString& className)
{
    // never destroyed: objects of these classes may be made until the very end
    static auto* const classes = new std::map<std::pair<unsigned, QString>, JSClassRef>;
    JSClassRef& known = (*classes)[{traits & ~static_cast<unsigned>(OverridesMark), className}];
    if (!known)
        known = make(traits, className.toUtf8());
    return known;
}

ObjectImp* hostOf(JSContextRef context, JSValueRef value)
{
    if (!JSValueIsObjectOfClass(context, value, rootClass()))
        return nullptr;
    return implementation(JSValueToObject(context, value, nullptr));
}

JSClassRef globalClass()
{
    static const JSClassRef global = [] {
        // A class with a static function has a prototype object of its own, and that one's prototype
        // can be set, while the global object's cannot. The function is there for nothing else.
        static const auto nothing = [](JSContextRef context, JSObjectRef, JSObjectRef, std::size_t,
                                       const JSValueRef[],
                                       JSValueRef*) -> JSValueRef { return JSValueMakeUndefined(context); };
        static const JSStaticFunction functions[] = {
            {"[[Global]]", nothing, kJSPropertyAttributeDontEnum | kJSPropertyAttributeReadOnly},
            {nullptr, nullptr, 0}};
        JSClassDefinition definition = kJSClassDefinitionEmpty;
        definition.className = "global";
        definition.staticFunctions = functions;
        return JSClassCreate(&definition);
    }();
    return global;
}

} // namespace KJS::HostClass
