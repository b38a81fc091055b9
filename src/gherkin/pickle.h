#pragma once

#include "gherkin/export.h"
#include "gherkin/feature.h"
#include "gherkin/step.h"

namespace Gherkin {

/** One run of a scenario: what is left of a feature when backgrounds and examples are worked in. */
struct Pickle
{
    QString title;
    /** Names of the tags of the feature, the rule, the scenario and the examples, in this order. */
    QStringList tags;
    QVector<Step> steps;
    /** Of the scenario, or of the row of the examples. */
    Location location;
    /** Of the scenario, also for a row of its examples. */
    int scenarioLine = 0;
    /** The index of the rule in the feature; -1 outside rules. */
    int rule = -1;
    /** The ids of the scenario in the feature's tree, and of the row of examples. */
    QVector<int> nodes;
    /** The ids of the tags in the feature's tree. */
    QVector<int> tagNodes;
};

/**
 * The runs of a feature in the order of the file. A scenario with examples gives one for each row, with
 * "<name>" replaced by the row's value in its title and in the texts, tables and doc strings of its steps;
 * without rows it gives none. Background steps come first, the feature's before the rule's; a scenario
 * without steps has no background steps either.
 */
GHERKIN_EXPORT QVector<Pickle> compilePickles(const Feature& feature);

} // namespace Gherkin
