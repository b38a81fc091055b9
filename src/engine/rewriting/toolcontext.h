#pragma once

#include "engine/rewriting/rewriter.h"

#include <JavaScriptCore/JavaScript.h>

namespace KJS::Rewriting {

/**
 * The context in which the parser and the rewriting modules (js/) run. Scripts cannot reach it, so
 * whatever they do to their built-ins does not disturb it.
 */
class ToolContext
{
public:
    explicit ToolContext(JSContextGroupRef group);
    ~ToolContext();
    ToolContext(const ToolContext&) = delete;
    ToolContext& operator=(const ToolContext&) = delete;

    /** Null when the parser refuses the text. */
    std::shared_ptr<const RewrittenText> rewrite(const QString& text, SourceKind kind, Flavour flavour);

    /** See Rewriter::withoutModuleSyntax. */
    QString withoutModuleSyntax(const QString& text, QString* parserMessage, int* parserLine);

private:
    JSObjectRef evaluate(const QByteArray& code, const char* name);
    JSObjectRef callTool(const char* function, const std::vector<JSValueRef>& arguments);

    JSGlobalContextRef m_context;
    JSObjectRef m_tool = nullptr;
};

} // namespace KJS::Rewriting
