#include "agent/bindings/bindings.h"
#include "agent/reflection/bind.h"

#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>

Q_DECLARE_METATYPE(QTextCursor)
Q_DECLARE_METATYPE(QTextBlock)

namespace Torvix::Agent {

static void bindCursor(Registry& registry)
{
    Bind<QTextCursor>(registry)
        .value()
        .method("position", &QTextCursor::position)
        .method("anchor", &QTextCursor::anchor)
        .method("setPosition", &QTextCursor::setPosition, "position, mode", defaults(QTextCursor::MoveAnchor))
        .method("movePosition", &QTextCursor::movePosition, "operation, mode, count",
                defaults(QTextCursor::MoveAnchor, 1))
        .method("insertText", qOverload<const QString&>(&QTextCursor::insertText), "text")
        .method("selectedText", &QTextCursor::selectedText)
        .method("select", &QTextCursor::select, "selection")
        .method("hasSelection", &QTextCursor::hasSelection)
        .method("selectionStart", &QTextCursor::selectionStart)
        .method("selectionEnd", &QTextCursor::selectionEnd)
        .method("clearSelection", &QTextCursor::clearSelection)
        .method("removeSelectedText", &QTextCursor::removeSelectedText)
        .method("deleteChar", &QTextCursor::deleteChar)
        .method("atStart", &QTextCursor::atStart)
        .method("atEnd", &QTextCursor::atEnd)
        .method("blockNumber", &QTextCursor::blockNumber)
        .method("columnNumber", &QTextCursor::columnNumber)
        .method("block", &QTextCursor::block)
        .constructor<>()
        .constructor<QTextDocument*>("document");
    Bind<QTextBlock>(registry)
        .value()
        .method("text", &QTextBlock::text)
        .method("blockNumber", &QTextBlock::blockNumber)
        .method("position", &QTextBlock::position)
        .method("length", &QTextBlock::length)
        .method("isValid", &QTextBlock::isValid)
        .method("next", &QTextBlock::next)
        .method("previous", &QTextBlock::previous);
    Bind<QTextDocument>(registry)
        .method("toPlainText", &QTextDocument::toPlainText)
        .method("toHtml", &QTextDocument::toHtml, "encoding", defaults(QByteArray()))
        .method("setPlainText", &QTextDocument::setPlainText, "text")
        .method("lineCount", &QTextDocument::lineCount)
        .method("characterCount", &QTextDocument::characterCount)
        .method("isEmpty", &QTextDocument::isEmpty)
        .method("firstBlock", &QTextDocument::firstBlock)
        .method("lastBlock", &QTextDocument::lastBlock)
        .method("findBlockByNumber", &QTextDocument::findBlockByNumber, "number");
}

template <class Edit>
static void bindEdit(Registry& registry)
{
    Bind<Edit>(registry)
        .method("document", &Edit::document)
        .method("textCursor", &Edit::textCursor)
        .method("setTextCursor", &Edit::setTextCursor, "cursor")
        .method("toPlainText", &Edit::toPlainText)
        .method("cursorRect", qOverload<>(&Edit::cursorRect))
        .method("ensureCursorVisible", &Edit::ensureCursorVisible)
        .method("moveCursor", &Edit::moveCursor, "operation, mode", defaults(QTextCursor::MoveAnchor))
        .extension(
            "find", +[](Edit& edit, const QString& text) { return edit.find(text); }, "text");
}

void bindText(Registry& registry)
{
    bindCursor(registry);
    bindEdit<QTextEdit>(registry);
    bindEdit<QPlainTextEdit>(registry);
    Bind<QTextEdit>(registry).method("toHtml", &QTextEdit::toHtml);
}

} // namespace Torvix::Agent
