// The parts of Runtime that run script: evaluation, calls, helpers, built-ins, errors.

#include "engine/debugger.h"
#include "engine/jsc/heap.h"
#include "engine/jsc/jscstring.h"
#include "engine/jsc/runtime.h"
#include "engine/jsc/valueaccess.h"

namespace KJS {

namespace {

/** In the order of Helper. They hold on to the built-ins as they are at the start. */
const char helperSource[] = R"js((() => {
    const {defineProperty, getOwnPropertyDescriptor, keys, preventExtensions, prototype: {toString}} = Object;
    const {apply} = Reflect;
    const toPrimitive = Symbol.toPrimitive;
    const tag = object => {
        try { return apply(toString, object, []).slice(8, -1); } catch { return 'Object'; }
    };
    return [
        (object, key, value, writable, enumerable, configurable) =>
            defineProperty(object, key, {__proto__: null, value, writable, enumerable, configurable}),
        (object, key, getter, setter) => {
            const known = getOwnPropertyDescriptor(object, key);
            const descriptor = {__proto__: null, enumerable: true, configurable: true,
                                get: known && known.get, set: known && known.set};
            if (getter) descriptor.get = getter;
            if (setter) descriptor.set = setter;
            defineProperty(object, key, descriptor);
        },
        object => keys(object),
        tag,
        (object, hint) => {
            const exotic = object[toPrimitive];
            if (exotic !== undefined && exotic !== null) {
                const result = apply(exotic, object, [hint]);
                if (typeof result !== 'object' && typeof result !== 'function' || result === null)
                    return result;
                throw new TypeError('No default value');
            }
            for (const name of hint === 'string' ? ['toString', 'valueOf'] : ['valueOf', 'toString']) {
                const method = object[name];
                if (typeof method !== 'function')
                    continue;
                const result = apply(method, object, []);
                if (typeof result !== 'object' && typeof result !== 'function' || result === null)
                    return result;
            }
            throw new TypeError('No default value');
        },
        object => preventExtensions(object),
    ];
})())js";

const char* const builtinNames[] = {"Object",     "Function",       "Array",       "Boolean",   "String",
                                    "Number",     "Date",           "RegExp",      "Error",     "EvalError",
                                    "RangeError", "ReferenceError", "SyntaxError", "TypeError", "URIError"};

} // namespace

void Runtime::loadHelpers()
{
    const JscString source(QString::fromLatin1(helperSource));
    const JSValueRef list = JSEvaluateScript(m_context, source.get(), nullptr, nullptr, 1, nullptr);
    Q_ASSERT(list);
    const JSObjectRef functions = JSValueToObject(m_context, list, nullptr);
    for (unsigned i = 0; i < m_helpers.size(); ++i) {
        const JSValueRef function = JSObjectGetPropertyAtIndex(m_context, functions, i, nullptr);
        JSValueProtect(m_context, function); // until the context's end
        m_helpers[i] = JSValueToObject(m_context, function, nullptr);
    }
}

void Runtime::loadBuiltins()
{
    static const Identifier prototypeName("prototype");
    for (std::size_t i = 0; i < m_builtins.size(); ++i) {
        m_builtins[i] = Object::dynamicCast(get(&m_globalExec, m_global.imp(), Identifier(builtinNames[i])));
        m_prototypes[i] = Object::dynamicCast(m_builtins[i].get(&m_globalExec, prototypeName));
    }
}

JSValueRef Runtime::callHelper(Helper which, std::initializer_list<JSValueRef> arguments,
                               JSValueRef* exception)
{
    return JSObjectCallAsFunction(m_context, m_helpers[static_cast<std::size_t>(which)], nullptr,
                                  arguments.size(), arguments.begin(), exception);
}

// Runs ------------------------------------------------------------------------------------------

/** Counts the runs that are inside one another; the outermost cleans up behind itself. */
template <class Run>
Rewriting::Outcome Runtime::counted(Run run)
{
    // more young objects than any sensible number of plain pointers: nobody waits for those any more
    constexpr std::size_t crowd = 10000;
    struct Scope
    {
        explicit Scope(Runtime& owner) : runtime(owner), young(Heap::self().youngCount())
        {
            if (runtime.m_runDepth++ == 0) {
                runtime.m_runStart = std::chrono::steady_clock::now();
                runtime.m_interrupted = false;
                runtime.m_stopLine = runtime.m_stopSourceId = -1;
            }
        }
        ~Scope()
        {
            Heap& heap = Heap::self();
            if (--runtime.m_runDepth > 0)
                return;
            const std::size_t kept = std::max(heap.floor(), young);
            heap.releaseYoung(kept > heap.floor() + crowd ? heap.floor() : kept);
            if (heap.hasDead())
                heap.destroyDead();
        }
        Runtime& runtime;
        std::size_t young;
    };
    const Scope scope(*this);
    Rewriting::Outcome outcome = run();
    if (outcome.threw() && m_runDepth == 1 && m_script->wasStopped()) {
        const QString message = m_interrupted
                                    ? QStringLiteral("Script interrupted")
                                    : QStringLiteral("Script stopped after %1 ms").arg(m_timeLimit.count());
        const Object error =
            Error::create(&m_globalExec, GeneralError, UString(message), m_stopLine, m_stopSourceId);
        outcome.exception = ValueAccess::toScript(*this, &m_globalExec, error);
    }
    return outcome;
}

Rewriting::Outcome Runtime::call(JSObjectRef function, JSObjectRef thisObject,
                                 const std::vector<JSValueRef>& args)
{
    return counted([&] { return m_script->call(function, thisObject, args); });
}

Rewriting::Outcome Runtime::construct(JSObjectRef function, const std::vector<JSValueRef>& args)
{
    return counted([&] { return m_script->construct(function, args); });
}

Completion Runtime::evaluate(const UString& code, const Value& thisValue, bool internal)
{
    const JSObjectRef receiver =
        thisValue.isObject() ? ValueAccess::toScript(*this, &m_globalExec, ValueAccess::object(thisValue))
                             : nullptr;
    const QString url = m_sourceName.isNull()
                            ? QStringLiteral("script-%1").arg(m_script->sources().nextSourceId())
                            : m_sourceName.qstring();
    m_sourceName = UString();
    m_parsingInternal = internal;
    const Rewriting::Outcome outcome = counted([&] {
        return m_script->evaluate(code.qstring(), url, receiver == m_globalReference ? nullptr : receiver);
    });
    m_parsingInternal = false;
    if (outcome.threw())
        return Completion(Throw, ValueAccess::fromScript(*this, outcome.exception));
    if (!outcome.value || JSValueIsUndefined(m_context, outcome.value))
        return Completion(Normal);
    return Completion(ReturnValue, ValueAccess::fromScript(*this, outcome.value));
}

bool Runtime::shouldStop() const
{
    return m_interrupted || (m_timeLimit.count() > 0 && m_runDepth > 0 &&
                             std::chrono::steady_clock::now() - m_runStart >= m_timeLimit);
}

void Runtime::keepStopPlace()
{
    if (m_stopSourceId >= 0)
        return;
    const int frame = m_script->frames().depth();
    m_stopLine = m_script->line(frame);
    m_stopSourceId = m_script->sourceId(frame);
}

JSValueRef Runtime::stopIfInterrupted()
{
    if (!m_interrupted || m_runDepth == 0)
        return nullptr;
    keepStopPlace();
    return m_script->stop();
}

const Rewriting::FunctionInfo* Runtime::declarationOf(JSObjectRef function)
{
    return m_script->functionOf(function);
}

// Exceptions ------------------------------------------------------------------------------------

void Runtime::raise(ExecState* exec, JSValueRef exception)
{
    if (m_script->carriesException()) {
        m_script->run([exception](JSValueRef* passed) -> JSValueRef {
            *passed = exception;
            return nullptr;
        });
    }
    if (exec)
        exec->setException(ValueAccess::fromScript(*this, exception));
}

Value Runtime::finish(ExecState* exec, const Rewriting::Outcome& outcome)
{
    if (!outcome.threw())
        return ValueAccess::fromScript(*this, outcome.value);
    exec->setException(ValueAccess::fromScript(*this, outcome.exception));
    return Undefined();
}

// Hooks -----------------------------------------------------------------------------------------

template <class Hook>
void Runtime::tell(Hook hook)
{
    if (!m_debugger)
        return;
    try {
        if (!hook(*m_debugger))
            m_interrupted = true;
    } catch (...) {
        m_script->carryCurrentException();
    }
}

void Runtime::setDebugger(Debugger* debugger)
{
    m_debugger = debugger;
}

void Runtime::setHooksWanted(bool wanted)
{
    if (!wanted && m_script->hooksWanted()) {
        for (int frame = m_script->frames().depth(); frame > 0; --frame)
            frameLeft(frame);
    }
    m_script->setHooksWanted(wanted);
}

void Runtime::statementReached(int frame)
{
    tell([&](Debugger& debugger) { return debugger.atStatement(exec(frame)); });
}

void Runtime::frameEntered(int frame)
{
    tell([&](Debugger& debugger) { return debugger.enterContext(exec(frame)); });
}

void Runtime::frameLeft(int frame)
{
    tell([&](Debugger& debugger) { return debugger.exitContext(exec(frame), Completion()); });
}

void Runtime::exceptionThrown(JSValueRef value, bool isCaught, int frame)
{
    if (m_debugger) {
        const Value thrown = ValueAccess::fromScript(*this, value);
        tell([&](Debugger& debugger) { return debugger.exception(exec(frame), thrown, isCaught); });
    }
}

void Runtime::sourceParsed(const Rewriting::SourceInfo& source, int errorLine)
{
    if (m_parsingInternal) {
        m_internalSources.insert(source.id);
        m_parsingInternal = false;
        return;
    }
    tell([&](Debugger& debugger) {
        return debugger.sourceParsed(currentExec(), source.id, UString(source.text), errorLine);
    });
}

namespace {

template <class Ask>
Rewriting::TextAnswer askInterpreter(Rewriting::ScriptRuntime& script, Ask ask)
{
    try {
        UString error;
        const UString answer = ask(&error);
        return answer.isNull() ? Rewriting::TextAnswer::failure(error.qstring())
                               : Rewriting::TextAnswer::answer(answer.qstring());
    } catch (...) {
        script.carryCurrentException();
        return Rewriting::TextAnswer::failure(QStringLiteral("The module could not be loaded"));
    }
}

} // namespace

Rewriting::TextAnswer Runtime::resolveModule(const QString& name, const QString&)
{
    return askInterpreter(*m_script,
                          [&](UString* error) { return m_interpreter->searchModule(UString(name), error); });
}

Rewriting::TextAnswer Runtime::readModule(const QString& path)
{
    return askInterpreter(
        *m_script, [&](UString* error) { return m_interpreter->loadModuleCode(UString(path), error); });
}

} // namespace KJS
