#pragma once

#include "gherkin/export.h"
#include "gherkin/pickle.h"

#include <QJsonObject>

/**
 * Features and pickles in the form of Cucumber Messages, the format in which tools of behaviour-driven
 * testing speak to each other: https://github.com/cucumber/messages
 *
 * Ids there are texts that are unique in a whole run: the prefix, which the caller chooses for each
 * feature, and the number of the node.
 */
namespace Gherkin {

/** The GherkinDocument message of a feature file. `uri` is its path. */
GHERKIN_EXPORT QJsonObject gherkinDocumentMessage(const Feature& feature, const QString& uri,
                                                  const QString& idPrefix);

/** The Pickle message. `index` is that of the pickle in its feature: its ids are made of it. */
GHERKIN_EXPORT QJsonObject pickleMessage(const Pickle& pickle, int index, const QString& language,
                                         const QString& uri, const QString& idPrefix);

/** The ids that pickleMessage() gives a pickle and its steps. */
GHERKIN_EXPORT QString pickleId(int pickleIndex, const QString& idPrefix);
GHERKIN_EXPORT QString pickleStepId(int pickleIndex, int stepIndex, const QString& idPrefix);

} // namespace Gherkin
