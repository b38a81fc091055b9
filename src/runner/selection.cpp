#include "runner/selection.h"

#include "runner/reportfiles.h"

#include <QDir>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace Torvix {

namespace {

/** Cases, as "suite/case", that did not pass in the run whose stream lies in the folder. */
QSet<QString> failedCases(const QString& folder)
{
    QSet<QString> names;
    const RunReport report = readStreamFile(QDir(folder).absoluteFilePath(streamFileName()));
    for (const CaseReport& testCase : report.cases) {
        if (testCase.outcome() != CaseOutcome::Passed && testCase.outcome() != CaseOutcome::Skipped)
            names += testCase.suite + QLatin1Char('/') + testCase.name;
    }
    return names;
}

bool sharesATag(const QStringList& wanted, const QStringList& present)
{
    return std::any_of(wanted.begin(), wanted.end(),
                       [&present](const QString& tag) { return present.contains(tag); });
}

class CaseFilter
{
public:
    explicit CaseFilter(const RunOptions& options) : m_options(options), m_pattern(options.grep)
    {
        if (options.lastFailed)
            m_lastFailed = failedCases(options.outputFolder);
    }

    bool fits(const Suite& suite, const TestCase& testCase) const
    {
        const QString name = suite.name + QLatin1Char('/') + testCase.name;
        if (!m_options.grep.isEmpty() && !m_pattern.match(name).hasMatch())
            return false;
        if (!m_options.tags.isEmpty() && !sharesATag(m_options.tags, testCase.tags))
            return false;
        if (sharesATag(m_options.excludedTags, testCase.tags))
            return false;
        return !m_options.lastFailed || m_lastFailed.contains(name);
    }

private:
    const RunOptions& m_options;
    QRegularExpression m_pattern;
    QSet<QString> m_lastFailed;
};

} // namespace

int Selection::caseCount() const
{
    int count = 0;
    for (const Suite& suite : suites)
        count += suite.cases.size();
    return count;
}

QString Selection::name() const
{
    QStringList names;
    for (const Suite& suite : suites)
        names += suite.name;
    names.removeDuplicates();
    return names.join(QLatin1String(", "));
}

bool select(const RunOptions& options, Selection* selection, QString* error)
{
    const CaseFilter filter(options);
    for (const QString& path : options.paths) {
        Suite suite;
        if (!loadSuite(path, &suite, error))
            return false;
        const auto unwanted = [&](const TestCase& testCase) { return !filter.fits(suite, testCase); };
        suite.cases.erase(std::remove_if(suite.cases.begin(), suite.cases.end(), unwanted),
                          suite.cases.end());
        if (!suite.cases.isEmpty())
            selection->suites += suite;
    }
    return true;
}

} // namespace Torvix
