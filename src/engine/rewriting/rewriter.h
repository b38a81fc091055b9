#pragma once

#include "engine/rewriting/sourcetable.h"

#include <JavaScriptCore/JavaScript.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace KJS::Rewriting {

/** What a text is. */
enum class SourceKind { Script, Module, Eval, Function };

/** Fast: positions and `this` of every frame. Debug: also its variables, at a higher price. */
enum class Flavour { Fast, Debug };

/**
 * A text with its hooks, independent of where it will run: function ids and the frame's depth are
 * places of fixed width that instantiate() fills in.
 */
struct RewrittenText
{
    QString prefix; ///< begins every name that was inserted; does not occur in the author's text
    QString code;   ///< same lines as the author's text
    QString edits;  ///< where text was inserted or replaced, see sourceedits.h
    std::vector<FunctionInfo> functions; ///< the first is the program itself; sourceId is not set
    QString moduleInfo; ///< JSON of the module record (imports.js); empty without import and export

    /**
     * The code for a frame at that depth (as the slot array counts it), its functions numbered from
     * `firstFunctionId`. Positions stay: `edits` holds for each instance.
     */
    QString instantiate(int depth, int firstFunctionId) const;
};

/**
 * Rewrites texts for one context group. The parser and the rewriting modules live in a context of
 * their own, made on the first text that is not in the cache on disk.
 *
 * The cache is `$XDG_CACHE_HOME/torvix/scripts` (`~/.cache/torvix/scripts`), one file a text, named by
 * a hash of text, rewriter and engine version. It may be deleted at any time, several processes may
 * use it, and a file that cannot be read or is damaged counts as missing.
 */
class Rewriter
{
public:
    explicit Rewriter(JSContextGroupRef group);
    ~Rewriter();
    Rewriter(const Rewriter&) = delete;
    Rewriter& operator=(const Rewriter&) = delete;

    JSContextGroupRef group() const;
    SourceTable& sources();

    /** Null when the parser refuses the text. The result is shared with the memory cache. */
    std::shared_ptr<const RewrittenText> rewrite(const QString& text, SourceKind kind, Flavour flavour);

    /** The cache folder; an empty one turns the cache on disk off. */
    void setCacheFolder(const QString& folder);

    /**
     * A text as the engine's script parser can check it although it has import or export: without
     * them, line by line. `parserMessage` is what our own parser says of the text, empty if nothing.
     */
    QString withoutModuleSyntax(const QString& text, QString* parserMessage, int* parserLine);

    /** Whether the parser is at work: that is no script's time, and must not be cut off. */
    bool isBusy() const;

    /** Whether the parser had to be loaded so far. */
    bool toolLoaded() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace KJS::Rewriting
