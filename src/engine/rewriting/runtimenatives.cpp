// What the prelude calls: the members of its `host` object.

#include "engine/rewriting/errortexts.h"
#include "engine/rewriting/scriptruntime_p.h"

#include <limits>

extern "C" void JSGlobalContextSetUnhandledRejectionCallback(JSGlobalContextRef, JSObjectRef function,
                                                             JSValueRef* exception);

namespace KJS::Rewriting {

namespace {

using Runtime = ScriptRuntime::Private;

/** The arguments of one call; missing ones are undefined. */
struct Call
{
    Runtime& runtime;
    JSContextRef context;
    size_t count;
    const JSValueRef* arguments;
    JSValueRef* exception;

    JSValueRef at(size_t index) const
    {
        return index < count ? arguments[index] : JSValueMakeUndefined(context);
    }
    int integer(size_t index) const { return static_cast<int>(JSValueToNumber(context, at(index), nullptr)); }
    QString text(size_t index) const { return stringOf(context, at(index)); }
    int frame(size_t index) const { return Runtime::frameOf(integer(index)); }
};

/** Adapts a function on a Call to the engine's call-back type. Undefined for a null result. */
template <JSValueRef (*function)(const Call&)>
JSValueRef callback(JSContextRef context, JSObjectRef, JSObjectRef, size_t count,
                    const JSValueRef arguments[], JSValueRef* exception)
{
    Runtime* runtime = Runtime::of(context);
    JSValueRef result = nullptr;
    if (runtime) {
        try {
            result = function({*runtime, context, count, arguments, exception});
        } catch (...) { // C++ exceptions must not unwind the engine's frames
            *exception = runtime->q->carryCurrentException();
        }
    }
    return result ? result : JSValueMakeUndefined(context);
}

JSValueRef statement(const Call& call)
{
    call.runtime.hooks.statementReached(call.runtime.frames.depth());
    return nullptr;
}

JSValueRef entered(const Call& call)
{
    call.runtime.announceEntered(call.frame(0));
    return nullptr;
}

JSValueRef left(const Call& call)
{
    call.runtime.hooks.frameLeft(call.frame(0));
    return nullptr;
}

JSValueRef thrown(const Call& call)
{
    call.runtime.exceptionThrown(call.at(0), call.frame(1), JSValueToBoolean(call.context, call.at(2)));
    return nullptr;
}

JSValueRef isHost(const Call& call)
{
    JSObjectRef object = asObject(call.context, call.at(0));
    return JSValueMakeBoolean(call.context, object && call.runtime.hooks.isHostObject(call.context, object));
}

JSValueRef has(const Call& call)
{
    const auto answer = call.runtime.hooks.hostHasProperty(call.context, asObject(call.context, call.at(0)),
                                                           call.at(1), call.exception);
    return answer ? JSValueMakeBoolean(call.context, *answer) : nullptr;
}

/** The code of eval text for a frame at a depth, which is entered; undefined when it runs as it is. */
JSValueRef evalCode(const Call& call)
{
    Runtime& runtime = call.runtime;
    const LoadedSource loaded = runtime.loadEval(call.text(0), SourceKind::Eval, call.integer(1));
    if (!loaded.rewritten)
        return nullptr;
    runtime.frames.setDepth(call.frame(1) - 1);
    const int frame = runtime.frames.push(loaded.firstFunctionId);
    if (runtime.q->hooksWanted())
        runtime.announceEntered(frame);
    return makeString(call.context, loaded.code);
}

/** A function made from the text of a function expression; undefined when it cannot be rewritten. */
JSValueRef functionCode(const Call& call)
{
    Runtime& runtime = call.runtime;
    const QString text = QLatin1Char('(') + call.text(0) + QLatin1Char(')');
    const LoadedSource loaded =
        runtime.loadEval(text, SourceKind::Function, runtime.frames.word(FrameStack::DepthWord) + 1);
    if (!loaded.rewritten)
        return nullptr;
    JSValueRef exception = nullptr;
    JSValueRef function =
        JSEvaluateScript(call.context, JsString(loaded.code), nullptr, nullptr, 1, &exception);
    return exception ? nullptr : function;
}

JSValueRef functionText(const Call& call)
{
    const QString text = call.runtime.rewriter.sources().functionText(call.integer(0));
    return text.isNull() ? nullptr : makeString(call.context, text);
}

JSValueRef urlOf(const Call& call)
{
    const SourceTable& sources = call.runtime.rewriter.sources();
    const FunctionInfo* info = sources.function(call.integer(0));
    const SourceInfo* source = info ? sources.source(info->sourceId) : nullptr;
    return makeString(call.context, source ? source->url : QString());
}

/** The text of an answer, or its message as an exception. */
JSValueRef give(const Call& call, const TextAnswer& answer)
{
    if (answer.ok)
        return makeString(call.context, answer.text);
    if (!*call.exception)
        *call.exception = call.runtime.makeError(answer.text);
    return nullptr;
}

JSValueRef resolveModule(const Call& call)
{
    return give(call, call.runtime.hooks.resolveModule(call.text(0), call.text(1)));
}

JSValueRef readModule(const Call& call)
{
    return give(call, call.runtime.hooks.readModule(call.text(0)));
}

/** [generator function, module record as JSON] of a module's text. */
JSValueRef compileModule(const Call& call)
{
    Runtime& runtime = call.runtime;
    const QString path = call.text(0), text = call.text(1);
    const LoadedSource loaded = runtime.load(text, path, SourceKind::Module, 0);
    SyntaxReport report;
    if (loaded.rewritten) {
        JSValueRef generator =
            JSEvaluateScript(call.context, JsString(loaded.code), nullptr, JsString(path), 1, call.exception);
        if (generator) {
            const JSValueRef pair[] = {generator, makeString(call.context, loaded.rewritten->moduleInfo)};
            return JSObjectMakeArray(call.context, 2, pair, nullptr);
        }
    }
    report = runtime.check(text, true);
    if (report.message.isEmpty())
        report.message = QStringLiteral("The module cannot be parsed");
    if (!*call.exception) {
        JSValueRef message = makeString(call.context, report.message);
        JSObjectRef syntaxError =
            asObject(call.context, property(call.context, runtime.helpers, "SyntaxError"));
        *call.exception = JSObjectCallAsConstructor(call.context, syntaxError, 1, &message, nullptr);
    }
    if (JSObjectRef error = asObject(call.context, *call.exception))
        runtime.place(error, path, loaded.source->id, report.line);
    return nullptr;
}

/** Places an error at a line of a source that the url names. */
JSValueRef place(const Call& call)
{
    JSObjectRef error = asObject(call.context, call.at(0));
    const SourceInfo* source = call.runtime.rewriter.sources().newestOf(call.text(1));
    const int line = call.integer(2);
    if (error && source && line > 0)
        call.runtime.place(error, source->url, source->id, line);
    return nullptr;
}

JSValueRef rejected(const Call& call)
{
    call.runtime.hooks.rejectionUnhandled(call.at(1));
    return nullptr;
}

struct Member
{
    const char* name;
    JSObjectCallAsFunctionCallback callback;
};

constexpr Member members[] = {
    {"statement", callback<statement>},
    {"entered", callback<entered>},
    {"left", callback<left>},
    {"thrown", callback<thrown>},
    {"isHost", callback<isHost>},
    {"has", callback<has>},
    {"evalCode", callback<evalCode>},
    {"functionCode", callback<functionCode>},
    {"functionText", callback<functionText>},
    {"urlOf", callback<urlOf>},
    {"resolveModule", callback<resolveModule>},
    {"readModule", callback<readModule>},
    {"compileModule", callback<compileModule>},
    {"place", callback<place>},
};

} // namespace

JSObjectRef ScriptRuntime::Private::makeHost()
{
    JSObjectRef host = JSObjectMake(context, nullptr, nullptr);
    const auto add = [&](const char* name, JSObjectRef value) {
        JSObjectSetProperty(context, host, JsString(name), value, kJSPropertyAttributeNone, nullptr);
    };
    for (const Member& member : members)
        add(member.name, JSObjectMakeFunctionWithCallback(context, JsString(member.name), member.callback));
    add("slots", frames.makeSlotArray(context));
    add("functions", frames.makeFunctionArray(context));
    return host;
}

void ScriptRuntime::Private::watchRejections()
{
    JSGlobalContextSetUnhandledRejectionCallback(
        context, JSObjectMakeFunctionWithCallback(context, nullptr, callback<rejected>), nullptr);
}

JSValueRef ScriptRuntime::Private::makeError(const QString& message)
{
    JSValueRef text = makeString(context, message);
    return JSObjectMakeError(context, 1, &text, nullptr);
}

bool ScriptRuntime::Private::isError(JSValueRef value) const
{
    return JSValueIsObject(context, value) &&
           JSValueIsInstanceOfConstructor(context, value, errorClass, nullptr);
}

void ScriptRuntime::Private::exceptionThrown(JSValueRef value, int frame, bool isCaught)
{
    const int top = frames.depth();
    for (int i = frame; i > 0 && !isCaught; --i) {
        if (frames.insideTry(i))
            isCaught = true;
        const FunctionInfo* info = q->function(i);
        if (info && info->isAsync && !info->isGenerator)
            break; // its promise takes the exception: nobody below sees it
    }
    if (isError(value))
        describe(asObject(context, value), top);
    if (silence == 0)
        hooks.exceptionThrown(value, isCaught, top);
}

void ScriptRuntime::Private::describe(JSObjectRef error, int frame)
{
    const auto read = [&](const char* name) { return property(context, error, name); };
    const auto readText = [&](const char* name) {
        JSValueRef value = read(name);
        return JSValueIsString(context, value) ? stringOf(context, value) : QString();
    };
    const auto set = [&](const char* name, JSValueRef value) {
        JSObjectSetProperty(context, error, JsString(name), value, kJSPropertyAttributeDontEnum, nullptr);
    };
    // an error may have been made elsewhere than where it is thrown: its own file tells
    int sourceId = q->sourceId(frame);
    const SourceInfo* running = rewriter.sources().source(sourceId);
    const QString url = readText("sourceURL");
    if (!url.isEmpty() && running && url != running->url)
        if (const SourceInfo* other = rewriter.sources().newestOf(url))
            sourceId = other->id;
    // helpers of ours stand for the statement that uses them (a stack overflow may happen there)
    const bool isHelper = url == QLatin1String(preludeUrl);
    if (isHelper && running)
        set("sourceURL", makeString(context, running->url));
    if (isHelper || JSValueIsUndefined(context, read("line")))
        set("line", number(frames.line(frame)));
    const JSValueRef ownLine = read("line"); // whatever the script made of it
    const double ownNumber =
        JSValueIsNumber(context, ownLine) ? JSValueToNumber(context, ownLine, nullptr) : 0;
    const bool isLine = ownNumber >= 1 && ownNumber <= std::numeric_limits<int>::max();
    const int line = isLine ? static_cast<int>(ownNumber) : frames.line(frame);
    if (JSValueIsUndefined(context, read("sourceId")))
        set("sourceId", number(sourceId));
    const QString message = readText("message");
    const QString clean = showsInsertion(message) ? cleanMessage(message, editMap(sourceId), line) : message;
    const QString hinted = clean + hooks.hintFor(clean);
    if (hinted != message)
        set("message", makeString(context, hinted));
    const QString stack = readText("stack");
    if (!stack.isEmpty()) {
        const QString cleaned = cleanStack(stack, [this](const QString& name) {
            const SourceInfo* source = rewriter.sources().newestOf(name);
            return source ? editMap(source->id) : nullptr;
        });
        set("stack", makeString(context, cleaned));
    }
}

void ScriptRuntime::Private::place(JSObjectRef error, const QString& url, int sourceId, int line)
{
    const auto set = [&](const char* name, JSValueRef value) {
        JSObjectSetProperty(context, error, JsString(name), value, kJSPropertyAttributeDontEnum, nullptr);
    };
    set("line", number(line));
    set("sourceURL", makeString(context, url));
    set("sourceId", number(sourceId));
}

const EditMap* ScriptRuntime::Private::editMap(int sourceId)
{
    auto loaded = m_loaded.find(sourceId);
    if (loaded == m_loaded.end() || !loaded->second.rewritten)
        return nullptr;
    std::unique_ptr<EditMap>& map = m_maps[sourceId];
    if (!map)
        map = std::make_unique<EditMap>(loaded->second.code, loaded->second.rewritten->edits,
                                        loaded->second.source->text);
    return map.get();
}

} // namespace KJS::Rewriting
