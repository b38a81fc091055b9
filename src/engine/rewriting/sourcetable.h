#pragma once

#include <QHash>
#include <QString>

#include <deque>
#include <memory>
#include <vector>

namespace KJS::Rewriting {

/** One function (or program, module, eval, field initialiser, static block, class) of a source. */
struct FunctionInfo
{
    int sourceId = 0;
    int start = 0; ///< range in the author's text, UTF-16 units
    int end = 0;
    int line = 0; ///< line of `start`, from 1
    QString name; ///< as declared; empty for anonymous ones
    bool isAsync = false;
    bool isGenerator = false;
    bool keepsThis = false; ///< its frames note their `this`
};

/** A source text that was evaluated, as its author wrote it. */
struct SourceInfo
{
    int id = 0; ///< from 1
    QString url;
    QString text;
};

/**
 * What was parsed, by source id and function id, both unique in a context group. Entries stay until
 * the table goes: functions of any source may live on and be asked for their text.
 */
class SourceTable
{
public:
    /** Null when unknown. The pointers stay valid. */
    const SourceInfo* source(int sourceId) const;
    const FunctionInfo* function(int functionId) const;

    /** The author's text of a function; a null string when unknown. */
    QString functionText(int functionId) const;

    /** The newest source with that name; null when there is none. */
    const SourceInfo* newestOf(const QString& url) const;

    const SourceInfo& addSource(const QString& url, const QString& text);
    /** Adds functions of one source. Returns the id of the first; the others follow it. */
    int addFunctions(int sourceId, const std::vector<FunctionInfo>& functions);

    /** The id that the next source gets. */
    int nextSourceId() const { return static_cast<int>(m_sources.size()) + 1; }

private:
    std::vector<std::unique_ptr<SourceInfo>> m_sources;
    std::deque<FunctionInfo> m_functions;
    QHash<QString, int> m_newest;
};

} // namespace KJS::Rewriting
