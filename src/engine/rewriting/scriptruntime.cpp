#include "engine/rewriting/scriptruntime.h"

#include "engine/rewriting/scriptruntime_p.h"

typedef bool (*JSShouldTerminateCallback)(JSContextRef context, void* data);
extern "C" {
void JSContextGroupSetExecutionTimeLimit(JSContextGroupRef, double seconds, JSShouldTerminateCallback, void*);
void JSContextGroupClearExecutionTimeLimit(JSContextGroupRef);
}

namespace KJS::Rewriting {

ScriptRuntime::ScriptRuntime(Rewriter& rewriter, JSGlobalContextRef context, ScriptHooks& hooks,
                             Flavour flavour)
    : d(std::make_unique<Private>(this, rewriter, context, hooks, flavour))
{
}

ScriptRuntime::~ScriptRuntime()
{
    if (d->timeLimit > 0)
        clearTimeLimit();
}

JSGlobalContextRef ScriptRuntime::context() const
{
    return d->context;
}

FrameStack& ScriptRuntime::frames()
{
    return d->frames;
}

SourceTable& ScriptRuntime::sources()
{
    return d->rewriter.sources();
}

Outcome ScriptRuntime::evaluate(const QString& text, const QString& url, JSObjectRef thisObject)
{
    return d->run([&](JSValueRef* exception) -> JSValueRef {
        const int frame = d->frames.depth() + 1;
        const LoadedSource loaded = d->load(text, url, SourceKind::Script, Private::depthOf(frame));
        d->frames.push(loaded.firstFunctionId);
        d->setThis(frame, thisObject ? thisObject : JSContextGetGlobalObject(d->context));
        d->clearScope(frame);
        if (hooksWanted())
            d->announceEntered(frame);
        if (loaded.rewritten && !loaded.rewritten->moduleInfo.isEmpty()) {
            d->helper(d->importInto,
                      {d->number(loaded.firstFunctionId),
                       makeString(d->context, loaded.rewritten->moduleInfo), makeString(d->context, url)},
                      exception);
            if (*exception)
                return nullptr;
        }
        const JsString name(url);
        JSValueRef value =
            JSEvaluateScript(d->context, JsString(loaded.code), thisObject, name, 1, exception);
        const bool isPlainScript = loaded.rewritten && loaded.rewritten->moduleInfo.isEmpty();
        if (*exception && isPlainScript && d->frames.line(frame) <= 1) {
            // an early error that only the engine finds: let it speak of the author's text
            JSValueRef early = nullptr;
            if (!JSCheckScriptSyntax(d->context, JsString(text), name, 1, &early) && early)
                *exception = early;
        }
        return value;
    });
}

Outcome ScriptRuntime::call(JSObjectRef function, JSObjectRef thisObject,
                            const std::vector<JSValueRef>& arguments)
{
    return d->run([&](JSValueRef* exception) {
        return JSObjectCallAsFunction(d->context, function, thisObject, arguments.size(), arguments.data(),
                                      exception);
    });
}

Outcome ScriptRuntime::construct(JSObjectRef constructor, const std::vector<JSValueRef>& arguments)
{
    return d->run([&](JSValueRef* exception) -> JSValueRef {
        return JSObjectCallAsConstructor(d->context, constructor, arguments.size(), arguments.data(),
                                         exception);
    });
}

Outcome ScriptRuntime::run(const std::function<JSValueRef(JSValueRef* exception)>& action)
{
    return d->run(action);
}

SyntaxReport ScriptRuntime::checkSyntax(const QString& text)
{
    return d->check(text, false);
}

void ScriptRuntime::setHooksWanted(bool wanted)
{
    if (wanted == hooksWanted())
        return;
    d->frames.word(FrameStack::FlagWord) = wanted ? 1 : 0;
    for (int frame = 1; wanted && frame <= d->frames.depth(); ++frame)
        d->hooks.frameEntered(frame);
}

bool ScriptRuntime::hooksWanted() const
{
    return d->frames.word(FrameStack::FlagWord) != 0;
}

int ScriptRuntime::line(int frame) const
{
    return d->frames.line(frame);
}

const FunctionInfo* ScriptRuntime::function(int frame) const
{
    return d->rewriter.sources().function(d->frames.functionId(frame));
}

int ScriptRuntime::sourceId(int frame) const
{
    const FunctionInfo* info = function(frame);
    return info ? info->sourceId : 0;
}

const FunctionInfo* ScriptRuntime::functionOf(JSObjectRef object) const
{
    JSObjectRef idOf = asObject(d->context, property(d->context, d->helpers, "functionIdOf"));
    JSValueRef exception = nullptr;
    JSValueRef id = d->helper(idOf, {object}, &exception);
    if (exception)
        return nullptr; // no function
    return d->rewriter.sources().function(static_cast<int>(JSValueToNumber(d->context, id, nullptr)));
}

JSValueRef ScriptRuntime::thisAt(int frame) const
{
    const FunctionInfo* info = function(frame);
    if (!info || !info->keepsThis)
        return JSContextGetGlobalObject(d->context);
    JSValueRef value = element(d->context, d->thisArray, static_cast<unsigned>(Private::depthOf(frame)));
    return JSValueIsStrictEqual(d->context, value, d->noThis) ? nullptr : value;
}

JSValueRef ScriptRuntime::carryCurrentException()
{
    if (!d->carried)
        d->carried = std::current_exception();
    d->frames.word(FrameStack::PendingWord) = 1;
    return d->makeError(QStringLiteral("the run ends with an error of native code"));
}

JSValueRef ScriptRuntime::stop()
{
    d->isStopping = true;
    d->frames.word(FrameStack::PendingWord) = 1;
    return d->makeError(QStringLiteral("the run is stopped"));
}

bool ScriptRuntime::carriesException() const
{
    return d->carried != nullptr;
}

void ScriptRuntime::setTimeLimit(double seconds, std::function<bool()> shouldStop)
{
    d->timeLimit = seconds;
    d->shouldStop = std::move(shouldStop);
    d->armTimeLimit();
}

void ScriptRuntime::Private::armTimeLimit()
{
    const auto ask = [](JSContextRef, void* data) {
        Private* runtime = static_cast<Private*>(data);
        const bool mayStop = !runtime->rewriter.isBusy();
        if (mayStop && (!runtime->shouldStop || runtime->shouldStop())) {
            runtime->isStopping = true;
            runtime->frames.word(FrameStack::PendingWord) = 1;
            return true;
        }
        runtime->armTimeLimit(); // the engine asks only once
        return false;
    };
    JSContextGroupSetExecutionTimeLimit(rewriter.group(), timeLimit, ask, this);
}

void ScriptRuntime::clearTimeLimit()
{
    d->timeLimit = 0;
    JSContextGroupClearExecutionTimeLimit(d->rewriter.group());
}

bool ScriptRuntime::wasStopped() const
{
    return d->wasStopped;
}

void ScriptRuntime::dropDeadFrames()
{
    JSObjectRef truncate = asObject(d->context, property(d->context, d->helpers, "truncate"));
    d->helper(truncate, {d->number(Private::depthOf(d->frames.depth()))});
}

} // namespace KJS::Rewriting
