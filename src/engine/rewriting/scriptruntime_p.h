#pragma once

#include "engine/rewriting/jsstring.h"
#include "engine/rewriting/scriptruntime.h"
#include "engine/rewriting/sourceedits.h"

#include <QHash>
#include <QSet>

#include <unordered_map>

namespace KJS::Rewriting {

/** A text that is ready to run. */
struct LoadedSource
{
    const SourceInfo* source = nullptr;
    int firstFunctionId = 0;
    std::shared_ptr<const RewrittenText> rewritten; ///< null: it runs as it is
    QString code;
};

class ScriptRuntime::Private
{
public:
    Private(ScriptRuntime* runtime, Rewriter& rewriter, JSGlobalContextRef context, ScriptHooks& hooks,
            Flavour flavour);
    ~Private();

    /** The runtime of the context that a call-back is given; null when there is none (any more). */
    static Private* of(JSContextRef context);

    // scriptruntime_p.cpp: texts and helpers of the prelude

    /** Gives a text an id and its code for a frame at `depth`, and tells the hook. */
    LoadedSource load(const QString& text, const QString& url, SourceKind kind, int depth);
    /** The same for text that comes again and again: it is announced once. */
    LoadedSource loadEval(const QString& text, SourceKind kind, int depth);
    SyntaxReport check(const QString& text, bool asModule);
    /** Calls a helper of the prelude; an exception gives null and is stored if wanted. */
    JSValueRef helper(JSObjectRef function, const std::vector<JSValueRef>& arguments,
                      JSValueRef* exception = nullptr);
    JSValueRef number(int value) const { return JSValueMakeNumber(context, value); }

    // frames

    static int depthOf(int frame) { return FrameStack::base + frame; }
    static int frameOf(int depth) { return depth - FrameStack::base; }
    void setThis(int frame, JSValueRef value);
    void clearScope(int frame);
    void announceEntered(int frame);
    /** Leaves the frames above one that ended without saying so. */
    void unwindTo(int frame);

    // runtimenatives.cpp: what the prelude calls

    JSObjectRef makeHost();
    void watchRejections();
    void exceptionThrown(JSValueRef value, int frame, bool isCaught);
    /** Line, source and author's texts of an error object. */
    void describe(JSObjectRef error, int frame);
    /** Sets "line", "sourceURL" and "sourceId" of an error that belongs to another place. */
    void place(JSObjectRef error, const QString& url, int sourceId, int line);
    JSValueRef makeError(const QString& message);
    bool isError(JSValueRef value) const;
    const EditMap* editMap(int sourceId);

    // runtimedebugging.cpp

    bool hasVariables(int frame) const;
    Outcome debugHelper(const char* name, const std::vector<JSValueRef>& arguments);

    // running

    void armTimeLimit();
    void beginRun();
    /** After the run: frames as before it, jobs done when it was the outermost, C++ exceptions on. */
    Outcome endRun(int frame, JSValueRef value, JSValueRef exception);
    template <typename Action>
    Outcome run(Action&& action);

    ScriptRuntime* q;
    Rewriter& rewriter;
    JSGlobalContextRef context;
    ScriptHooks& hooks;
    Flavour flavour;
    FrameStack frames;

    int nesting = 0;
    int silence = 0; ///< above 0: exceptions are not reported
    std::exception_ptr carried;
    bool isStopping = false;
    bool wasStopped = false;
    std::function<bool()> shouldStop;
    double timeLimit = 0;

    // protected while the runtime lives
    JSObjectRef helpers = nullptr;
    JSObjectRef arrived = nullptr;
    JSObjectRef importInto = nullptr;
    JSObjectRef thisArray = nullptr;
    JSObjectRef scopeArray = nullptr;
    JSObjectRef noThis = nullptr;
    JSObjectRef errorClass = nullptr;

private:
    void installPrelude();
    /** Makes the helpers known under another prefix. */
    void ensurePrefix(const QString& prefix);

    QSet<QString> m_prefixes;
    QHash<QString, LoadedSource> m_evals;
    std::unordered_map<int, LoadedSource> m_loaded; // by source id, to explain errors
    std::unordered_map<int, std::unique_ptr<EditMap>> m_maps;
};

template <typename Action>
Outcome ScriptRuntime::Private::run(Action&& action)
{
    const int frame = frames.depth();
    beginRun();
    JSValueRef exception = nullptr;
    JSValueRef value = nullptr;
    try {
        value = action(&exception);
    } catch (...) {
        endRun(frame, nullptr, nullptr);
        throw;
    }
    return endRun(frame, value, exception);
}

} // namespace KJS::Rewriting
