#include "engine/rewriting/scriptruntime_p.h"

#include "engine/rewriting/embedded.h"
#include "engine/rewriting/errortexts.h"

#include <QRegularExpression>

extern "C" {
void JSLock(JSContextRef context);
void JSUnlock(JSContextRef context);
}

namespace KJS::Rewriting {

namespace {

// Names that rewritten code uses behind its prefix, and what the prelude calls them.
constexpr const char* helperNames[][2] = {
    {"I", "I"},   {"N", "N"}, {"T", "T"},   {"E", "E"},     {"M", "M"},     {"no", "no"},
    {"s", "s"},   {"n", "n"}, {"o", "o"},   {"x", "x"},     {"c", "c"},     {"k", "k"},
    {"g", "g"},   {"p", "p"}, {"q", "q"},   {"w", "w"},     {"P", "P"},     {"R", "R"},
    {"ev", "ev"}, {"Y", "Y"}, {"eq", "eq"}, {"in", "isIn"}, {"imp", "imp"}, {"name", "name"},
};
constexpr char defaultPrefix[] = "$t$";
constexpr int evalLimit = 256; // texts of evals that are remembered
constexpr int evalTextLimit = 65536;

std::unordered_map<JSGlobalContextRef, ScriptRuntime::Private*>& registry()
{
    static thread_local std::unordered_map<JSGlobalContextRef, ScriptRuntime::Private*> runtimes;
    return runtimes;
}

bool mayBeModule(const QString& text)
{
    static const QRegularExpression declaration(
        QStringLiteral("^\\s*(?:import\\s*[\\w$*{\"']|export\\s*[\\w$*{])"),
        QRegularExpression::MultilineOption);
    return declaration.match(text).hasMatch();
}

} // namespace

ScriptRuntime::Private::Private(ScriptRuntime* runtime, Rewriter& useRewriter, JSGlobalContextRef useContext,
                                ScriptHooks& useHooks, Flavour useFlavour)
    : q(runtime)
    , rewriter(useRewriter)
    , context(useContext)
    , hooks(useHooks)
    , flavour(useFlavour)
{
    registry()[context] = this;
    installPrelude();
}

ScriptRuntime::Private::~Private()
{
    registry().erase(context);
    for (JSObjectRef object : {helpers, arrived, importInto, thisArray, scopeArray, noThis, errorClass})
        JSValueUnprotect(context, object);
}

ScriptRuntime::Private* ScriptRuntime::Private::of(JSContextRef context)
{
    // a context's address may come again after it: nothing is remembered beside the registry
    const auto found = registry().find(JSContextGetGlobalContext(context));
    return found == registry().end() ? nullptr : found->second;
}

void ScriptRuntime::Private::installPrelude()
{
    QString names, values;
    for (const auto& [name, local] : helperNames) {
        const QString full = QLatin1String(defaultPrefix) + QLatin1String(name);
        names += full + QLatin1Char(',');
        values += full + QLatin1Char(':') + QLatin1String(local) + QLatin1Char(',');
    }
    const QString code = QStringLiteral("const {%1}=(function(host){'use strict';").arg(names) +
                         QString::fromUtf8(embeddedPrelude()) +
                         QStringLiteral("host.helpers={arrived,importInto,T,E,no,Error,SyntaxError,variables,"
                                        "setVariable,evaluateIn,truncate,functionIdOf};"
                                        "return{%1}})(this)")
                             .arg(values);
    JSObjectRef host = makeHost();
    JSValueRef exception = nullptr;
    JSEvaluateScript(context, JsString(code), host, JsString(preludeUrl), 1, &exception);
    helpers = asObject(context, property(context, host, "helpers"));
    if (exception || !helpers)
        qFatal("the script prelude does not load: %s",
               exception ? qPrintable(stringOf(context, exception)) : "");
    m_prefixes.insert(QLatin1String(defaultPrefix));
    JSValueProtect(context, helpers);
    const auto keep = [this](const char* name) {
        JSObjectRef object = asObject(context, property(context, helpers, name));
        JSValueProtect(context, object);
        return object;
    };
    arrived = keep("arrived");
    importInto = keep("importInto");
    thisArray = keep("T");
    scopeArray = keep("E");
    noThis = keep("no");
    errorClass = keep("Error");
    watchRejections();
}

void ScriptRuntime::Private::ensurePrefix(const QString& prefix)
{
    if (m_prefixes.contains(prefix))
        return;
    m_prefixes.insert(prefix);
    QString code = QStringLiteral("const ");
    for (const auto& names : helperNames) {
        if (!code.endsWith(QLatin1Char(' ')))
            code += QLatin1Char(',');
        code += prefix + QLatin1String(names[0]) + QLatin1Char('=') + QLatin1String(defaultPrefix) +
                QLatin1String(names[0]);
    }
    JSEvaluateScript(context, JsString(code), nullptr, JsString(preludeUrl), 1, nullptr);
}

LoadedSource ScriptRuntime::Private::load(const QString& text, const QString& url, SourceKind kind, int depth)
{
    LoadedSource loaded;
    SourceTable& table = rewriter.sources();
    loaded.rewritten = rewriter.rewrite(text, kind, flavour);
    loaded.source = &table.addSource(url, text);
    int errorLine = 0;
    if (loaded.rewritten) {
        loaded.firstFunctionId = table.addFunctions(loaded.source->id, loaded.rewritten->functions);
        loaded.code = loaded.rewritten->instantiate(depth, loaded.firstFunctionId);
        ensurePrefix(loaded.rewritten->prefix);
    } else {
        FunctionInfo program;
        program.end = text.size();
        program.line = 1;
        program.keepsThis = true;
        program.name = kind == SourceKind::Module ? QStringLiteral("(module)") : QStringLiteral("(program)");
        loaded.firstFunctionId = table.addFunctions(loaded.source->id, {program});
        loaded.code = text;
        const SyntaxReport report = check(text, kind == SourceKind::Module);
        errorLine = report.ok ? 0 : report.line;
    }
    m_loaded[loaded.source->id] = loaded;
    hooks.sourceParsed(*loaded.source, errorLine);
    return loaded;
}

LoadedSource ScriptRuntime::Private::loadEval(const QString& text, SourceKind kind, int depth)
{
    if (kind == SourceKind::Function || text.size() > evalTextLimit)
        return load(text, QString(), kind, depth);
    auto known = m_evals.find(text);
    if (known == m_evals.end()) {
        if (m_evals.size() >= evalLimit)
            m_evals.clear();
        known = m_evals.insert(text, load(text, QString(), kind, depth));
    } else if (known->rewritten) {
        known->code = known->rewritten->instantiate(depth, known->firstFunctionId);
    }
    return *known;
}

SyntaxReport ScriptRuntime::Private::check(const QString& text, bool asModule)
{
    const auto engineSays = [this](const QString& code) {
        SyntaxReport report;
        JSValueRef exception = nullptr;
        report.ok = JSCheckScriptSyntax(context, JsString(code), nullptr, 1, &exception);
        if (JSObjectRef error = asObject(context, exception)) {
            report.line =
                static_cast<int>(JSValueToNumber(context, property(context, error, "line"), nullptr));
            report.message = stringOf(context, property(context, error, "message"));
        }
        return report;
    };
    const QString strict = asModule ? QStringLiteral("'use strict';") : QString();
    SyntaxReport report = engineSays(strict + text);
    if (report.ok || (!asModule && !mayBeModule(text)))
        return report;
    // the engine's interface parses no modules: it sees the text without import and export
    SyntaxReport parser;
    const QString plain = rewriter.withoutModuleSyntax(text, &parser.message, &parser.line);
    if (plain == text)
        return report;
    report = engineSays(strict + plain);
    if (!report.ok || parser.message.isEmpty())
        return report;
    parser.ok = false;
    return parser;
}

JSValueRef ScriptRuntime::Private::helper(JSObjectRef function, const std::vector<JSValueRef>& arguments,
                                          JSValueRef* exception)
{
    return JSObjectCallAsFunction(context, function, nullptr, arguments.size(), arguments.data(), exception);
}

void ScriptRuntime::Private::setThis(int frame, JSValueRef value)
{
    JSObjectSetPropertyAtIndex(context, thisArray, static_cast<unsigned>(depthOf(frame)), value, nullptr);
}

void ScriptRuntime::Private::clearScope(int frame)
{
    if (flavour == Flavour::Debug)
        JSObjectSetPropertyAtIndex(context, scopeArray, static_cast<unsigned>(depthOf(frame)), number(0),
                                   nullptr);
}

void ScriptRuntime::Private::announceEntered(int frame)
{
    if (const FunctionInfo* info = q->function(frame))
        frames.setLine(frame, info->line);
    hooks.frameEntered(frame);
}

void ScriptRuntime::Private::unwindTo(int frame)
{
    for (int left = frames.depth(); left > frame; --left) {
        try {
            if (q->hooksWanted())
                hooks.frameLeft(left);
        } catch (...) {
            q->carryCurrentException();
        }
        frames.setDepth(left - 1);
    }
    frames.setDepth(frame);
}

void ScriptRuntime::Private::beginRun()
{
    if (nesting++ > 0)
        return;
    // promise jobs run when the engine's lock is released: in endRun, not inside the action
    JSLock(context);
    wasStopped = false;
}

Outcome ScriptRuntime::Private::endRun(int frame, JSValueRef value, JSValueRef exception)
{
    const bool isOutermost = nesting == 1;
    if (exception && frames.word(FrameStack::PendingWord) == 0)
        helper(arrived, {exception, number(depthOf(frame)), JSValueMakeBoolean(context, isOutermost)});
    unwindTo(frame);
    if (!isOutermost) {
        --nesting;
        return {exception ? nullptr : value, exception};
    }
    if (value)
        JSValueProtect(context, value);
    if (exception)
        JSValueProtect(context, exception);
    JSUnlock(context);
    --nesting;
    unwindTo(frame);
    if (value)
        JSValueUnprotect(context, value);
    if (exception)
        JSValueUnprotect(context, exception);
    frames.word(FrameStack::InFlightWord) = 0;
    frames.word(FrameStack::PendingWord) = 0;
    wasStopped = isStopping;
    isStopping = false;
    if (carried)
        std::rethrow_exception(std::exchange(carried, nullptr));
    return {exception ? nullptr : value, exception};
}

} // namespace KJS::Rewriting
