#include "engine/rewriting/toolcontext.h"

#include "engine/rewriting/embedded.h"
#include "engine/rewriting/jsstring.h"
#include "engine/rewriting/sourceedits.h"

namespace KJS::Rewriting {

namespace {

const char* nameOf(SourceKind kind)
{
    switch (kind) {
    case SourceKind::Script:
        return "script";
    case SourceKind::Module:
        return "module";
    case SourceKind::Eval:
        return "eval";
    case SourceKind::Function:
        break;
    }
    return "function";
}

std::vector<FunctionInfo> readFunctions(const std::vector<int>& numbers, const QString& names)
{
    const QStringList list = names.split(QLatin1Char('\n'));
    std::vector<FunctionInfo> functions;
    for (size_t i = 0; i + 3 < numbers.size(); i += 4) {
        FunctionInfo info;
        info.start = numbers[i];
        info.end = numbers[i + 1];
        info.line = numbers[i + 2];
        info.isAsync = (numbers[i + 3] & 1) != 0;
        info.isGenerator = (numbers[i + 3] & 2) != 0;
        info.keepsThis = (numbers[i + 3] & 4) != 0;
        info.name = list.value(static_cast<int>(i / 4));
        functions.push_back(info);
    }
    return functions;
}

} // namespace

ToolContext::ToolContext(JSContextGroupRef group) : m_context(JSGlobalContextCreateInGroup(group, nullptr))
{
    evaluate(embeddedParser(), "acorn.js");
    m_tool = evaluate("(function(acorn) { 'use strict';" + embeddedRewriter() +
                          "return {rewrite, withoutModuleSyntax}; })(acorn)",
                      "rewriter.js");
    if (!m_tool)
        qFatal("the script rewriter does not load");
    JSValueProtect(m_context, m_tool);
}

ToolContext::~ToolContext()
{
    JSValueUnprotect(m_context, m_tool);
    JSGlobalContextRelease(m_context);
}

JSObjectRef ToolContext::evaluate(const QByteArray& code, const char* name)
{
    JSValueRef exception = nullptr;
    JSValueRef value = JSEvaluateScript(m_context, JsString(QString::fromUtf8(code)), nullptr, JsString(name),
                                        1, &exception);
    if (exception)
        qWarning("%s: %s", name, qPrintable(stringOf(m_context, exception)));
    return asObject(m_context, value);
}

JSObjectRef ToolContext::callTool(const char* function, const std::vector<JSValueRef>& arguments)
{
    JSValueRef exception = nullptr;
    JSObjectRef callee = asObject(m_context, property(m_context, m_tool, function));
    JSValueRef result =
        JSObjectCallAsFunction(m_context, callee, nullptr, arguments.size(), arguments.data(), &exception);
    if (exception && qEnvironmentVariableIsSet("TORVIX_REWRITER_ERRORS"))
        qWarning("rewriter: %s", qPrintable(stringOf(m_context, exception)));
    return exception ? nullptr : asObject(m_context, result);
}

std::shared_ptr<const RewrittenText> ToolContext::rewrite(const QString& text, SourceKind kind,
                                                          Flavour flavour)
{
    JSObjectRef result = callTool("rewrite", {makeString(m_context, text),
                                              makeString(m_context, QString::fromLatin1(nameOf(kind))),
                                              JSValueMakeBoolean(m_context, flavour == Flavour::Debug)});
    if (!result)
        return nullptr;
    const auto part = [&](unsigned index) { return stringOf(m_context, element(m_context, result, index)); };
    auto rewritten = std::make_shared<RewrittenText>();
    rewritten->prefix = part(0);
    rewritten->code = part(1);
    rewritten->edits = part(2);
    rewritten->functions = readFunctions(unpackNumbers(part(3)), part(4));
    rewritten->moduleInfo = part(5);
    return rewritten;
}

QString ToolContext::withoutModuleSyntax(const QString& text, QString* parserMessage, int* parserLine)
{
    JSObjectRef result = callTool("withoutModuleSyntax", {makeString(m_context, text)});
    if (!result)
        return text;
    *parserMessage = stringOf(m_context, element(m_context, result, 1));
    *parserLine = static_cast<int>(JSValueToNumber(m_context, element(m_context, result, 2), nullptr));
    return stringOf(m_context, element(m_context, result, 0));
}

} // namespace KJS::Rewriting
