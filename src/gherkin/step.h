#pragma once

#include "gherkin/export.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace Gherkin {

/** What a step is. "And", "But" and "*" take the type of the step before them. */
enum StepType { Given = 0, When = 1, Then = 2 };

/** The English keyword of a type: "Given", "When" or "Then"; empty for any other value. */
GHERKIN_EXPORT QString stepKeyword(StepType type);

/** One step of a scenario, ready to be matched with a step function. */
struct GHERKIN_EXPORT Step
{
    StepType type = Given;
    /** The line without its indentation, keyword included: "Given a \"large\" cup". */
    QString lineText;
    /** Where the text starts in lineText, past the keyword and the blanks behind it. */
    int textOffset = 0;
    /** The lines of the step's text block, without its indentation; empty if it has none. */
    QStringList multiLineText;
    /** The rows of the step's table, each with its cells; empty if it has none. */
    QVector<QStringList> table;
    /** The line in the feature file, from 1; 0 if it is not known. */
    int line = 0;

    /** What step functions are matched with: lineText from textOffset on. */
    QString text() const;
};

} // namespace Gherkin
