#include "report/results.h"

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

/** In the order of CaseOutcome. */
constexpr const char* outcomeNames[] = {"passed", "failed", "error", "skipped", "interrupted"};

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
    return QLatin1String(outcomeNames[std::size_t(outcome)]);
}

CaseOutcome caseOutcomeFromName(const QString& name)
{
    const auto row = std::find_if(std::begin(outcomeNames), std::end(outcomeNames),
                                  [&name](const char* each) { return name == QLatin1String(each); });
    return row == std::end(outcomeNames) ? CaseOutcome::Interrupted
                                         : CaseOutcome(row - std::begin(outcomeNames));
}

bool isFine(CaseOutcome outcome)
{
    return outcome == CaseOutcome::Passed || outcome == CaseOutcome::Skipped;
}

} // namespace Torvix
