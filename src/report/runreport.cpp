#include "report/runreport.h"

#include <algorithm>
#include <iterator>

namespace Torvix {

namespace {

struct TypeName
{
    ResultType type;
    const char* name;
};

constexpr TypeName typeNames[] = {
    {ResultType::Pass, "pass"},
    {ResultType::Fail, "fail"},
    {ResultType::ExpectedFail, "expected-fail"},
    {ResultType::UnexpectedPass, "unexpected-pass"},
    {ResultType::Fatal, "fatal"},
    {ResultType::Error, "error"},
    {ResultType::Skip, "skip"},
    {ResultType::Warning, "warning"},
    {ResultType::Log, "log"},
};

} // namespace

QString resultTypeName(ResultType type)
{
    const auto row = std::find_if(std::begin(typeNames), std::end(typeNames),
                                  [type](const TypeName& each) { return each.type == type; });
    return QLatin1String(row->name);
}

bool resultTypeFromName(const QString& name, ResultType* type)
{
    const auto row = std::find_if(std::begin(typeNames), std::end(typeNames),
                                  [&name](const TypeName& each) { return name == QLatin1String(each.name); });
    if (row == std::end(typeNames))
        return false;
    *type = row->type;
    return true;
}

bool isFailure(ResultType type)
{
    return type == ResultType::Fail || type == ResultType::UnexpectedPass || type == ResultType::Fatal ||
           type == ResultType::Error;
}

QString caseOutcomeName(CaseOutcome outcome)
{
    switch (outcome) {
    case CaseOutcome::Passed:
        return QStringLiteral("passed");
    case CaseOutcome::Failed:
        return QStringLiteral("failed");
    case CaseOutcome::Error:
        return QStringLiteral("error");
    case CaseOutcome::Skipped:
        return QStringLiteral("skipped");
    case CaseOutcome::Interrupted:
        break;
    }
    return QStringLiteral("interrupted");
}

const ResultEntry* AttemptReport::firstFailure() const
{
    const auto entry = std::find_if(entries.begin(), entries.end(),
                                    [](const ResultEntry& each) { return isFailure(each.type); });
    return entry == entries.end() ? nullptr : &*entry;
}

CaseOutcome CaseReport::outcome() const
{
    return attempts.isEmpty() ? CaseOutcome::Interrupted : attempts.last().outcome;
}

bool CaseReport::isFlaky() const
{
    return outcome() == CaseOutcome::Passed &&
           std::any_of(attempts.begin(), attempts.end(),
                       [](const AttemptReport& each) { return each.outcome != CaseOutcome::Passed; });
}

qint64 CaseReport::durationMs() const
{
    qint64 sum = 0;
    for (const AttemptReport& attempt : attempts)
        sum += attempt.durationMs;
    return sum;
}

int RunReport::count(CaseOutcome outcome) const
{
    return int(std::count_if(cases.begin(), cases.end(),
                             [outcome](const CaseReport& each) { return each.outcome() == outcome; }));
}

int RunReport::flakyCount() const
{
    return int(
        std::count_if(cases.begin(), cases.end(), [](const CaseReport& each) { return each.isFlaky(); }));
}

bool RunReport::failed() const
{
    return count(CaseOutcome::Failed) + count(CaseOutcome::Error) + count(CaseOutcome::Interrupted) > 0;
}

} // namespace Torvix
