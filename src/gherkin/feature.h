#pragma once

#include "gherkin/export.h"
#include "gherkin/step.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace Gherkin {

/** The rows that a scenario outline is run with. */
struct Examples
{
    QStringList tags; // with their "@", as everywhere
    QString title;
    QStringList header;
    QVector<QStringList> rows; // each as long as the header
    QVector<int> rowLines;
    int line = 0;
};

/** A scenario, or a scenario outline if it has examples. */
struct Scenario
{
    QStringList tags;
    QString title;
    QString description; // its lines, trimmed and joined by line ends
    QVector<Step> steps;
    QVector<Examples> examples;
    bool isOutline = false;
    int line = 0;
};

/** Steps that are put in front of those of each scenario beside it. */
struct Background
{
    QString title;
    QString description;
    QVector<Step> steps;
    int line = 0; // 0 if there is none
};

/** A group of scenarios inside a feature, with a background of its own. */
struct Rule
{
    QStringList tags;
    QString title;
    QString description;
    Background background;
    QVector<Scenario> scenarios;
    int line = 0;
};

/** The tree of a feature file. Lines count from 1. */
struct Feature
{
    QString language = QStringLiteral("en");
    QStringList tags;
    QString title;
    QString description;
    Background background;
    QVector<Scenario> scenarios; // those outside rules, which come before the rules
    QVector<Rule> rules;
    int line = 0; // 0 for a file without a feature
};

/** What is wrong with a feature file, and where. */
struct ParseError
{
    int line = 0;
    QString message;
};

/**
 * Reads the text of a feature file in the Gherkin language. False if there is anything wrong with it: the
 * errors are then added in the order of their lines, and `feature` holds what could be read. A text
 * without a feature is none with an error; its `line` is 0.
 *
 * "# language: de" in the first lines chooses the keywords; see languages().
 */
GHERKIN_EXPORT bool parseFeature(const QString& text, Feature& feature, QVector<ParseError>& errors);

/** The codes of the languages whose keywords are known, such as "en". */
GHERKIN_EXPORT QStringList languages();

} // namespace Gherkin
