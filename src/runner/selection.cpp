#include "runner/selection.h"

#include "runner/outputfolder.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <cstdio>

namespace Torvix {

namespace {

bool sharesATag(const QStringList& wanted, const QStringList& present)
{
    return std::any_of(wanted.begin(), wanted.end(),
                       [&present](const QString& tag) { return present.contains(tag); });
}

class CaseFilter
{
public:
    CaseFilter(const RunOptions& options, const QSet<QString>& notPassed)
        : m_options(options)
        , m_pattern(options.grep)
        , m_notPassed(notPassed)
    {
    }

    bool matches(const Suite& suite, const TestCase& testCase) const
    {
        const QString name = suite.name + QLatin1Char('/') + testCase.name;
        if (!m_options.grep.isEmpty() && !m_pattern.match(name).hasMatch())
            return false;
        if (!m_options.tags.isEmpty() && !sharesATag(m_options.tags, testCase.tags))
            return false;
        if (sharesATag(m_options.excludedTags, testCase.tags))
            return false;
        return !m_options.lastFailed || m_notPassed.contains(testCase.folder);
    }

private:
    const RunOptions& m_options;
    QRegularExpression m_pattern;
    QSet<QString> m_notPassed; ///< folders of the cases of --last-failed
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
    QSet<QString> left;
    if (options.lastFailed && !notPassed(options.outputFolder, &left)) {
        *error = QStringLiteral("there is no last run in '%1'; run without --last-failed first, or give its "
                                "folder with --output")
                     .arg(options.outputFolder);
        return false;
    }
    const CaseFilter filter(options, left);
    QSet<QString> taken; // a case that two of the paths name runs once
    for (const QString& path : options.paths) {
        Suite suite;
        if (!loadSuite(path, &suite, error))
            return false;
        for (const QString& folder : suite.leftOut)
            std::fprintf(stderr, "torvixrunner: %s: has no test.js and is left out\n",
                         qUtf8Printable(folder));
        const auto unwanted = [&](const TestCase& testCase) {
            const bool isWanted = !taken.contains(testCase.folder) && filter.matches(suite, testCase);
            taken += testCase.folder;
            return !isWanted;
        };
        suite.cases.erase(std::remove_if(suite.cases.begin(), suite.cases.end(), unwanted),
                          suite.cases.end());
        if (!suite.cases.isEmpty())
            selection->suites += suite;
    }
    return true;
}

} // namespace Torvix
