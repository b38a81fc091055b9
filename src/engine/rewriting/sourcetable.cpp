#include "engine/rewriting/sourcetable.h"

namespace KJS::Rewriting {

const SourceInfo* SourceTable::source(int sourceId) const
{
    if (sourceId < 1 || sourceId > static_cast<int>(m_sources.size()))
        return nullptr;
    return m_sources[static_cast<size_t>(sourceId) - 1].get();
}

const FunctionInfo* SourceTable::function(int functionId) const
{
    if (functionId < 1 || functionId > static_cast<int>(m_functions.size()))
        return nullptr;
    return &m_functions[static_cast<size_t>(functionId) - 1];
}

QString SourceTable::functionText(int functionId) const
{
    const FunctionInfo* info = function(functionId);
    const SourceInfo* of = info ? source(info->sourceId) : nullptr;
    return of ? of->text.mid(info->start, info->end - info->start) : QString();
}

const SourceInfo* SourceTable::newestOf(const QString& url) const
{
    return source(m_newest.value(url));
}

const SourceInfo& SourceTable::addSource(const QString& url, const QString& text)
{
    const int id = nextSourceId();
    m_sources.push_back(std::make_unique<SourceInfo>(SourceInfo{id, url, text}));
    if (!url.isEmpty())
        m_newest.insert(url, id);
    return *m_sources.back();
}

int SourceTable::addFunctions(int sourceId, const std::vector<FunctionInfo>& functions)
{
    const int first = static_cast<int>(m_functions.size()) + 1;
    for (const FunctionInfo& function : functions) {
        m_functions.push_back(function);
        m_functions.back().sourceId = sourceId;
    }
    return first;
}

} // namespace KJS::Rewriting
