#pragma once

#include <QString>

namespace Gherkin {

/** What a line of a feature file begins with. */
enum class Keyword { Feature, Background, Rule, Scenario, Outline, Examples, Given, When, Then, And };

/** A keyword at the beginning of a line. */
struct KeywordMatch
{
    Keyword keyword;
    /** Its length; of a block keyword with its colon, of a step keyword with its blank. */
    int length = 0;
};

bool isKnownLanguage(const QString& language);

/** Finds the longest keyword that `line`, which is trimmed, begins with. False if there is none. */
bool findKeyword(const QString& language, const QString& line, KeywordMatch& match);

inline bool isStep(Keyword keyword)
{
    return keyword >= Keyword::Given;
}

} // namespace Gherkin
