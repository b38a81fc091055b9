#include "report/runsummary.h"

#include <algorithm>
#include <limits>

namespace Torvix {

AttemptSummary CaseSummary::lastAttempt() const
{
    return attempts.isEmpty() ? AttemptSummary() : attempts.last();
}

bool CaseSummary::isFlaky() const
{
    return outcome() == CaseOutcome::Passed &&
           std::any_of(attempts.begin(), attempts.end(),
                       [](const AttemptSummary& each) { return each.outcome != CaseOutcome::Passed; });
}

qint64 CaseSummary::durationMs() const
{
    qint64 sum = 0;
    for (const AttemptSummary& attempt : attempts)
        sum += attempt.durationMs;
    return sum;
}

QString CaseSummary::fullName() const
{
    return suiteTitle.isEmpty() ? name : suiteTitle + QLatin1Char('/') + name;
}

void TextLengths::add(int length)
{
    int bucket = 0;
    while (bucket + 1 < bucketCount && qint64(length) >= qint64(1) << bucket)
        ++bucket;
    ++m_counts[bucket];
    m_sums[bucket] += length;
}

int TextLengths::limitFor(qint64 budget) const
{
    qint64 longer = 0;
    for (const qint64 count : m_counts)
        longer += count;
    for (int bucket = 0; bucket < bucketCount; ++bucket) {
        // The limit is in this bucket when even the shortest text of the next would be too long.
        const qint64 most = qint64(1) << bucket;
        if (longer * most > budget)
            return int(std::min<qint64>(budget / longer, std::numeric_limits<int>::max()));
        budget -= m_sums[bucket];
        longer -= m_counts[bucket];
    }
    return std::numeric_limits<int>::max();
}

qint64 TextLengths::totalFor(int limit) const
{
    qint64 total = 0;
    for (int bucket = 0; bucket < bucketCount; ++bucket)
        total += std::min(m_sums[bucket], m_counts[bucket] * limit);
    return total;
}

int RunSummary::count(CaseOutcome outcome) const
{
    return int(std::count_if(cases.begin(), cases.end(),
                             [outcome](const CaseSummary& each) { return each.outcome() == outcome; }));
}

int RunSummary::flakyCount() const
{
    return int(
        std::count_if(cases.begin(), cases.end(), [](const CaseSummary& each) { return each.isFlaky(); }));
}

bool RunSummary::failed() const
{
    return std::any_of(cases.begin(), cases.end(),
                       [](const CaseSummary& each) { return !isFine(each.outcome()); });
}

} // namespace Torvix
