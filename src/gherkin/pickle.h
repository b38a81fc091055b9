#pragma once

#include "gherkin/export.h"
#include "gherkin/feature.h"

namespace Gherkin {

/** One run of a scenario: what is left of a feature when backgrounds and examples are worked in. */
struct Pickle
{
    QString title;
    QStringList tags; // of the feature, the rule, the scenario and the examples
    QVector<Step> steps;
    int line = 0; // of the scenario, or of the row of the examples
};

/**
 * The runs of a feature in the order of the file. A scenario outline gives one for each row of its
 * examples, with "<name>" replaced in its title and in the texts, tables and text blocks of its steps;
 * without rows it gives none. Background steps come first, the feature's before the rule's; a scenario
 * without steps has no background steps either.
 */
GHERKIN_EXPORT QVector<Pickle> compilePickles(const Feature& feature);

} // namespace Gherkin
