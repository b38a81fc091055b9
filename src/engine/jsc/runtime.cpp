#include "engine/jsc/runtime.h"

#include "engine/debugger.h"
#include "engine/jsc/heap.h"
#include "engine/jsc/hostclass.h"
#include "engine/jsc/identifiertable.h"
#include "engine/jsc/valueaccess.h"

#include <algorithm>

namespace KJS {

namespace {

constexpr double stopPollSeconds = 0.05;

/**
 * The collector works on the script's thread only: marking asks C++ objects, which are of one thread.
 * The engine reads this setting once, from the environment, when the first group is made; what
 * somebody has set stays, and programs that are started later inherit nothing of it.
 */
JSContextGroupRef createGroup()
{
    static constexpr char name[] = "JSC_useConcurrentGC";
    static bool isFirst = true;
    const bool isOurs = isFirst && !qEnvironmentVariableIsSet(name);
    isFirst = false;
    if (isOurs)
        qputenv(name, "0");
    const JSContextGroupRef group = JSContextGroupCreate();
    if (isOurs)
        qunsetenv(name);
    return group;
}

} // namespace

Runtime::Runtime(Interpreter* interpreter, const Object& global, const InterpreterOptions& options)
    : m_interpreter(interpreter)
    , m_group(createGroup())
    , m_globalExec(interpreter, 0)
{
    JSContextGroupAddMarkingConstraint(
        m_group, [](JSMarkerRef marker, void* runtime) { static_cast<Runtime*>(runtime)->mark(marker); },
        this);
    m_rewriter = std::make_unique<Rewriting::Rewriter>(m_group);
    if (!options.cacheFolder.isNull())
        m_rewriter->setCacheFolder(options.cacheFolder);
    m_global = global.isNull() ? Object(new ObjectImp) : global;
    const unsigned traits = HostClass::traitsOf(m_global.imp());
    constexpr unsigned lookups = OverridesGet | OverridesHasProperty | OverridesPropList;
    m_context = JSGlobalContextCreateInGroup(m_group, traits & lookups ? HostClass::globalClass() : nullptr);
    m_globalReference = JSContextGetGlobalObject(m_context);
    Heap::self().add(this);
    m_script = std::make_unique<Rewriting::ScriptRuntime>(*m_rewriter, m_context, *this,
                                                          options.debugVariables ? Rewriting::Flavour::Debug
                                                                                 : Rewriting::Flavour::Fast);
    loadHelpers();
    bearGlobal(traits);
    if (traits & lookups)
        installMissHandler(traits);
    loadBuiltins();
    m_script->setTimeLimit(stopPollSeconds, [this] {
        const bool stops = shouldStop();
        if (stops)
            keepStopPlace();
        return stops;
    });
}

Runtime::~Runtime()
{
    if (m_debugger)
        m_debugger->attach(nullptr);
    m_script->clearTimeLimit();
    m_builtins = {};
    m_prototypes = {};
    m_execs.clear();
    m_globalExec.clearException();
    detachObjects();
    m_script.reset();
    // the last context of a group takes all script objects with it, whatever holds them
    JSGlobalContextRelease(m_context);
    m_rewriter.reset();
    JSContextGroupRelease(m_group);
    Heap::self().remove(this);
    Heap::self().destroyDead();
}

void Runtime::detachObjects()
{
    dropRestingViews();
    ObjectImp* const global = m_global.imp();
    m_global = Object();
    for (ObjectImp* view : qAsConst(m_views))
        ObjectAccess::detach(view);
    m_views.clear();
    while (!m_opaques.empty()) {
        (*m_opaques.begin())->detach();
        m_opaques.erase(m_opaques.begin());
    }
    Heap::self().forgetYoungOf(this);
    for (ObjectImp* root : m_roots)
        ObjectAccess::detach(root);
    m_roots.clear();
    // the global object of the engine has no finaliser
    if (ObjectAccess::runtime(global) == this)
        collected(global);
}

void Runtime::bearGlobal(unsigned traits)
{
    ObjectImp* const global = m_global.imp();
    const std::unique_ptr<ObjectImp::Unborn> unborn =
        ObjectAccess::bear(global, this, m_globalReference, traits);
    if (traits & OverridesMark)
        m_markers.push_back(global);
    unborn->prototype = Object();
    furnish(m_globalReference, *unborn);
}

/**
 * An object behind the global object's own properties, so that a name which is neither declared nor
 * built in reaches the C++ global object, and every other name costs no call-back.
 */
void Runtime::installMissHandler(unsigned traits)
{
    constexpr unsigned lookups = OverridesGet | OverridesHasProperty | OverridesPropList;
    const JSClassRef handlerClass = HostClass::obtain(traits & lookups, m_global.className().qstring());
    const JSObjectRef handler = JSObjectMake(m_context, handlerClass, m_global.imp());
    JSObjectRef link =
        JSValueToObject(m_context, JSObjectGetPrototype(m_context, m_globalReference), nullptr);
    JSObjectSetPrototype(m_context, handler, JSObjectGetPrototype(m_context, link));
    JSObjectSetPrototype(m_context, link, handler);
}

// Birth and views -------------------------------------------------------------------------------

JSObjectRef Runtime::bear(ObjectImp* object)
{
    const unsigned traits = HostClass::traitsOf(object);
    const JSClassRef hostClass = HostClass::obtain(traits, object->className().qstring());
    // call-backs find no C++ half before it is complete
    const JSObjectRef reference = JSObjectMake(m_context, hostClass, nullptr);
    const std::unique_ptr<ObjectImp::Unborn> unborn = ObjectAccess::bear(object, this, reference, traits);
    if (traits & OverridesMark)
        m_markers.push_back(object);
    const JSObjectRef prototype = ValueAccess::toScript(*this, currentExec(), unborn->prototype);
    // no prototype: taken away first, so that inherited names do not stand in the way of attributes
    if (!prototype)
        JSObjectSetPrototype(m_context, reference, JSValueMakeNull(m_context));
    furnish(reference, *unborn);
    if (prototype)
        JSObjectSetPrototype(m_context, reference, prototype);
    if (!unborn->isExtensible)
        callHelper(Helper::PreventExtensions, {reference}, nullptr);
    JSObjectSetPrivate(reference, object);
    return reference;
}

void Runtime::furnish(JSObjectRef object, const ObjectImp::Unborn& unborn)
{
    for (const ObjectImp::Unborn::Property& property : unborn.properties) {
        const JSStringRef key = IdentifierEntry::keyOf(property.name);
        const bool isPlain = !property.isAccessor() && property.attributes != None &&
                             !JSObjectHasProperty(m_context, object, key);
        if (isPlain) {
            const JSValueRef value = ValueAccess::toScript(*this, currentExec(), property.value);
            JSObjectSetProperty(m_context, object, key, value,
                                static_cast<JSPropertyAttributes>(property.attributes), nullptr);
        } else if (property.isAccessor()) {
            defineAccessor(currentExec(), object, property.name, property.getter, property.setter);
        } else {
            define(currentExec(), object, property.name, property.value, property.attributes);
        }
    }
}

ObjectImp* Runtime::implementation(JSObjectRef object)
{
    if (object == m_globalReference)
        return m_global.imp();
    if (ObjectImp* const view = m_views.value(object))
        return view;
    ObjectImp* const host = HostClass::hostOf(m_context, object);
    if (host && ObjectAccess::reference(host) == object)
        return host;
    ObjectImp* const view = ObjectAccess::makeView(this, object, JSObjectIsFunction(m_context, object));
    m_views.insert(object, view);
    return view;
}

void Runtime::restView(ObjectImp* view)
{
    if (ObjectAccess::isYoung(view))
        return; // it rests already: it was wanted again for a moment
    ObjectImp*& place = m_restingViews[m_nextRest++ % m_restingViews.size()];
    if (place)
        wakeView(place);
    ObjectAccess::setYoung(view, true);
    place = view;
}

/** Its rest is over: it goes, unless it is held again. */
void Runtime::wakeView(ObjectImp* view)
{
    ObjectAccess::setYoung(view, false);
    if (ObjectAccess::isHeld(view))
        return;
    m_views.remove(ObjectAccess::reference(view));
    ObjectAccess::destroy(view);
}

void Runtime::dropRestingViews()
{
    for (ObjectImp*& view : m_restingViews) {
        if (view)
            wakeView(view);
        view = nullptr;
    }
}

Object Runtime::moduleView(JSObjectRef object)
{
    dropRestingViews();
    ObjectImp*& view = m_views[object];
    if (!view)
        view = ObjectAccess::makeModuleView(this, object);
    return Object(view);
}

void Runtime::addRoot(ObjectImp* object)
{
    ObjectAccess::rootIndex(object) = static_cast<int>(m_roots.size());
    m_roots.push_back(object);
}

void Runtime::removeRoot(ObjectImp* object)
{
    int& index = ObjectAccess::rootIndex(object);
    ObjectImp* const last = m_roots.back();
    m_roots[static_cast<std::size_t>(index)] = last;
    ObjectAccess::rootIndex(last) = index;
    m_roots.pop_back();
    index = -1;
}

void Runtime::collected(ObjectImp* object)
{
    if (ObjectAccess::traits(object) & OverridesMark)
        m_markers.erase(std::remove(m_markers.begin(), m_markers.end(), object), m_markers.end());
    ObjectAccess::detach(object);
    if (!ObjectAccess::isHeld(object))
        Heap::self().addDead(object);
}

void Runtime::mark(JSMarkerRef marker)
{
    for (const ObjectImp* root : m_roots)
        marker->Mark(marker, ObjectAccess::reference(root));
    for (const ObjectImp* view : qAsConst(m_views))
        marker->Mark(marker, ObjectAccess::reference(view));
    Heap::self().markYoung(this, marker);
    const MarkingScope scope(marker);
    for (ObjectImp* object : m_markers) {
        if (marker->IsMarked(marker, ObjectAccess::reference(object)))
            object->mark();
    }
    m_interpreter->mark();
}

void Runtime::collectGarbage()
{
    m_script->dropDeadFrames();
    dropRestingViews();
    JSSynchronousGarbageCollectForDebugging(m_context);
}

// Exec states -----------------------------------------------------------------------------------

ExecState* Runtime::exec(int frame)
{
    if (frame <= 0)
        return &m_globalExec;
    const auto index = static_cast<std::size_t>(frame);
    if (index >= m_execs.size())
        m_execs.resize(index + 1);
    if (!m_execs[index])
        m_execs[index].reset(new ExecState(m_interpreter, frame));
    return m_execs[index].get();
}

ExecState* Runtime::currentExec()
{
    return m_script ? exec(m_script->frames().depth()) : &m_globalExec;
}

int Runtime::sourceIdOf(int frame)
{
    const int id = m_script->sourceId(frame);
    return id <= 0 || isInternal(id) ? -1 : id;
}

int Runtime::lineOf(int frame)
{
    if (const int line = m_script->line(frame))
        return line;
    const Rewriting::FunctionInfo* const function = m_script->function(frame);
    return function ? function->line : -1;
}

NativeScope::NativeScope(Runtime& runtime)
    : m_runtime(runtime)
    , m_exec(runtime.currentExec())
    , m_pending(m_exec->exception())
    , m_floor(Heap::self().floor())
{
    if (!m_pending.isNull())
        m_exec->clearException();
    Heap::self().setFloor(Heap::self().youngCount());
}

NativeScope::~NativeScope()
{
    m_exec->setException(m_pending);
    Heap& heap = Heap::self();
    heap.releaseYoung(heap.floor());
    heap.setFloor(m_floor);
    if (heap.hasDead())
        heap.destroyDead();
}

void NativeScope::passException(JSValueRef* exception)
{
    if (!m_exec->hadException())
        return;
    if (exception)
        *exception = ValueAccess::toScript(m_runtime, m_exec, m_exec->exception());
    m_exec->clearException();
}

} // namespace KJS
