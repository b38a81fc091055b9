#pragma once

#include "engine/error.h"
#include "engine/execstate.h"
#include "engine/interpreter.h"
#include "engine/jsc/marker.h"
#include "engine/jsc/objectaccess.h"
#include "engine/rewriting/scriptruntime.h"

#include <QHash>

#include <array>
#include <atomic>
#include <chrono>
#include <memory>
#include <set>
#include <vector>

namespace KJS {

class Debugger;
class OpaqueImp;

/** Functions of script's that the C API has no counterpart for; kept as they were at the start. */
enum class Helper { Define, DefineAccessor, Keys, Tag, ToPrimitive, PreventExtensions, Count };

enum class Builtin {
    Object,
    Function,
    Array,
    Boolean,
    String,
    Number,
    Date,
    RegExp,
    Error,
    Count = Error + 7
};

/** A look-up by script that is being answered by an override, so that the base can tell it answered. */
struct PendingLookup
{
    const ObjectImp* object = nullptr;
    const Identifier* name = nullptr;
    bool baseAsked = false;
    Value baseValue;      ///< of get
    bool baseHas = false; ///< of hasProperty
    PendingLookup* outer = nullptr;
};

/**
 * One interpreter's half of the engine: context, exec states, hooks, and which C++ objects its
 * collector must keep. Everything in it is internal to the library.
 */
class Runtime : public Rewriting::ScriptHooks
{
public:
    Runtime(Interpreter* interpreter, const Object& global, const InterpreterOptions& options);
    ~Runtime() override;

    static Runtime* of(const Interpreter* interpreter) { return interpreter->d.get(); }
    static Runtime* of(const ExecState* exec) { return of(exec->interpreter()); }

    JSContextRef context() const { return m_context; }
    Rewriting::ScriptRuntime& script() { return *m_script; }
    Interpreter* interpreter() const { return m_interpreter; }
    const Object& global() const { return m_global; }
    JSObjectRef globalReference() const { return m_globalReference; }
    Object builtin(Builtin which) const { return m_builtins[static_cast<std::size_t>(which)]; }
    Object builtinPrototype(Builtin which) const { return m_prototypes[static_cast<std::size_t>(which)]; }

    // Exec states -----------------------------------------------------------------------------------

    ExecState* globalExec() { return &m_globalExec; }
    ExecState* exec(int frame);
    ExecState* currentExec();
    int sourceIdOf(int frame);
    int lineOf(int frame);

    // Running script --------------------------------------------------------------------------------

    /**
     * Any use of the C API that can run script, by `action(JSValueRef* exception)`. An exception goes
     * to the exec state, and the result is then a default one.
     */
    template <class Action>
    auto guarded(ExecState* exec, Action action) -> decltype(action(nullptr))
    {
        JSValueRef exception = nullptr;
        auto result = action(&exception);
        if (exception) {
            raise(exec, exception);
            return {};
        }
        return result;
    }
    /** Puts it into the exec state; throws a C++ exception on when script carried one to here. */
    void raise(ExecState* exec, JSValueRef exception);
    /** evaluate, call or construct of ScriptRuntime: also an outermost run's begin and end. */
    Value finish(ExecState* exec, const Rewriting::Outcome& outcome);
    Rewriting::Outcome call(JSObjectRef function, JSObjectRef thisObject,
                            const std::vector<JSValueRef>& args);
    Rewriting::Outcome construct(JSObjectRef function, const std::vector<JSValueRef>& args);
    Completion evaluate(const UString& code, const Value& thisValue, bool internal);
    JSValueRef callHelper(Helper which, std::initializer_list<JSValueRef> arguments, JSValueRef* exception);

    // Ordinary operations of a born object: they do not reach its overrides ----------------------------

    Value get(ExecState* exec, const ObjectImp* object, const Identifier& name);
    void put(ExecState* exec, ObjectImp* object, const Identifier& name, const Value& value, int attributes);
    bool has(ExecState* exec, const ObjectImp* object, const Identifier& name);
    bool remove(ExecState* exec, ObjectImp* object, const Identifier& name);
    ReferenceList list(ExecState* exec, ObjectImp* object, bool recursive);
    void define(ExecState* exec, ObjectImp* object, const Identifier& name, const Value& value,
                int attributes);
    void define(ExecState* exec, JSObjectRef object, const Identifier& name, const Value& value,
                int attributes);
    void defineAccessor(ExecState* exec, JSObjectRef object, const Identifier& name, const Object& getter,
                        const Object& setter);
    void defineAccessor(ExecState* exec, ObjectImp* object, const Identifier& name, const Object& getter,
                        const Object& setter);

    /** Whether a call-back comes from the ordinary operation on that object; asks once. */
    bool takeBypass(const ObjectImp* object);
    bool isBypassed(const ObjectImp* object) const { return m_bypass == object || m_defining == object; }
    /** Whether an own property of that object is being defined, for which script looks it up first. */
    bool isDefining(const ObjectImp* object) const { return m_defining == object; }
    /** Whether script's look-up for the ordinary put that runs has met that object, or a prototype. */
    bool isOrdinaryPut(const ObjectImp* object, JSStringRef name, JSValueRef value) const;
    PendingLookup*& pendingLookup() { return m_lookup; }
    /** Set while an override's propList is asked for script: the base then lists nothing. */
    const ObjectImp*& listing() { return m_listing; }

    // Objects ---------------------------------------------------------------------------------------

    /** Makes the engine's object for a C++ one. */
    JSObjectRef bear(ObjectImp* object);
    /** The implementation of an object: a C++ half, or the view of one of script's. */
    ObjectImp* implementation(JSObjectRef object);
    /** A view that nothing holds any more is kept for a while: most are wanted again at once. */
    void restView(ObjectImp* view);
    /** Where a function of script's was declared; null for others. */
    const Rewriting::FunctionInfo* declarationOf(JSObjectRef function);
    /** A namespace object gets its own kind of view. */
    Object moduleView(JSObjectRef object);
    void addRoot(ObjectImp* object);
    void removeRoot(ObjectImp* object);
    void collected(ObjectImp* object);
    std::set<OpaqueImp*>& opaques() { return m_opaques; }
    void collectGarbage();

    // Debugger and stopping -------------------------------------------------------------------------

    void setDebugger(Debugger* debugger);
    Debugger* debugger() const { return m_debugger; }
    void setHooksWanted(bool wanted);
    void setSourceName(const UString& name) { m_sourceName = name; }
    void setTimeLimit(int timeLimitMs) { m_timeLimit = std::chrono::milliseconds(timeLimitMs); }
    void interrupt() { m_interrupted = true; }
    /**
     * For a native function that returns to script: the value to put into `*exception` when the script
     * is to end, null otherwise. The engine itself looks only now and then, by the processor time that
     * the script has used, which is nearly none for one that waits in native functions.
     */
    JSValueRef stopIfInterrupted();
    /** Whether the running script is to end: an interrupt, or its time is over. */
    bool shouldStop() const;

    // ScriptHooks -----------------------------------------------------------------------------------

    void statementReached(int frame) override;
    void frameEntered(int frame) override;
    void frameLeft(int frame) override;
    void exceptionThrown(JSValueRef value, bool caught, int frame) override;
    QString hintFor(const QString& message) override
    {
        return m_errorHint ? m_errorHint(message) : QString();
    }
    void setErrorHint(QString (*hint)(const QString& message)) { m_errorHint = hint; }
    void sourceParsed(const Rewriting::SourceInfo& source, int errorLine) override;
    Rewriting::TextAnswer resolveModule(const QString& name, const QString& importer) override;
    Rewriting::TextAnswer readModule(const QString& path) override;
    bool isHostObject(JSContextRef, JSObjectRef object) override;
    std::optional<bool> hostHasProperty(JSContextRef, JSObjectRef object, JSValueRef key,
                                        JSValueRef* exception) override;

private:
    void makeContext(const Object& global);
    void bearGlobal(unsigned traits);
    void installMissHandler(unsigned traits);
    void furnish(JSObjectRef object, const ObjectImp::Unborn& unborn);
    void loadHelpers();
    void loadBuiltins();
    void mark(JSMarkerRef marker);
    bool isInternal(int sourceId) const { return m_internalSources.count(sourceId) > 0; }
    void keepStopPlace();
    template <class Run>
    Rewriting::Outcome counted(Run run);
    template <class Hook>
    void tell(Hook hook);
    void wakeView(ObjectImp* view);
    void dropRestingViews();
    void detachObjects();

    Interpreter* m_interpreter;
    JSContextGroupRef m_group;
    std::unique_ptr<Rewriting::Rewriter> m_rewriter;
    JSGlobalContextRef m_context = nullptr;
    std::unique_ptr<Rewriting::ScriptRuntime> m_script;
    JSObjectRef m_globalReference = nullptr;
    Object m_global;
    std::array<JSObjectRef, static_cast<std::size_t>(Helper::Count)> m_helpers = {};
    QString (*m_errorHint)(const QString& message) = nullptr;
    std::array<Object, static_cast<std::size_t>(Builtin::Count)> m_builtins;
    std::array<Object, static_cast<std::size_t>(Builtin::Count)> m_prototypes;

    ExecState m_globalExec;
    std::vector<std::unique_ptr<ExecState>> m_execs;

    QHash<JSObjectRef, ObjectImp*> m_views;
    std::array<ObjectImp*, 64> m_restingViews = {};
    std::size_t m_nextRest = 0;
    std::vector<ObjectImp*> m_roots;
    std::vector<ObjectImp*> m_markers; // those that override mark()
    std::set<OpaqueImp*> m_opaques;

    const ObjectImp* m_bypass = nullptr;
    const ObjectImp* m_defining = nullptr;
    struct OrdinaryPut
    {
        const Identifier* name = nullptr;
        JSObjectRef object = nullptr;
        JSValueRef value = nullptr;
    } m_put;
    PendingLookup* m_lookup = nullptr;
    const ObjectImp* m_listing = nullptr;

    Debugger* m_debugger = nullptr;
    UString m_sourceName;
    std::set<int> m_internalSources;
    bool m_parsingInternal = false;
    int m_runDepth = 0;
    std::chrono::milliseconds m_timeLimit{0};
    std::chrono::steady_clock::time_point m_runStart;
    std::atomic<bool> m_interrupted{false};
    int m_stopLine = -1; ///< where the script was when it was told to stop
    int m_stopSourceId = -1;
};

/** Around a native function that script called: exec state, exception, and what it leaves behind. */
class NativeScope
{
public:
    explicit NativeScope(Runtime& runtime);
    ~NativeScope();
    NativeScope(const NativeScope&) = delete;
    NativeScope& operator=(const NativeScope&) = delete;

    ExecState* exec() const { return m_exec; }
    /** What the native code left in the exec state becomes script's exception. */
    void passException(JSValueRef* exception);

private:
    Runtime& m_runtime;
    ExecState* m_exec;
    Value m_pending;
    std::size_t m_floor;
};

} // namespace KJS
