#pragma once

#include "gherkin/export.h"
#include "gherkin/location.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace Gherkin {

/** What a step is. "And", "But" and "*" take the type of the step before them, the first one Given. */
enum StepType { Given = 0, When = 1, Then = 2 };

/** The English keyword of a type: "Given", "When" or "Then"; empty for any other value. */
GHERKIN_EXPORT QString stepKeyword(StepType type);

/** One step of a run of a scenario, ready to be matched with a step function. */
struct GHERKIN_EXPORT Step
{
    StepType type = Given;
    /** The keyword and the text, values of examples filled in: "Given a \"large\" cup". */
    QString lineText;
    /** Where the text starts in lineText, past the keyword and the blank behind it. */
    int textOffset = 0;
    /** The lines of the step's doc string, without its indentation. */
    QStringList multiLineText;
    /** Tells a doc string of one empty line, or of none, from no doc string. */
    bool hasDocString = false;
    /** Of the doc string, such as "json"; often empty. */
    QString mediaType;
    /** The rows of the step's table, each with its cells; empty if it has none. */
    QVector<QStringList> table;
    /** In the feature file. */
    Location location;
    /** The ids of the step in the feature's tree, and of the row of examples that filled it. */
    QVector<int> nodes;

    /** What step functions are matched with: lineText from textOffset on. */
    QString text() const;
    /** What stands in front of the text, in the language of the file: "Given ". */
    QString keyword() const;
};

} // namespace Gherkin
