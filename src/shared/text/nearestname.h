#pragma once

#include <QString>
#include <QStringList>

namespace Torvix {

/**
 * The least number of characters to put in, take out, change or swap with their neighbour to get from
 * one text to the other (optimal string alignment). Time and memory grow with the product of the lengths.
 */
int editDistance(const QString& from, const QString& to);

/** The name of `known` that a mistyped one was most probably meant to be, case aside; null when none is
 *  near. */
QString nearestName(const QString& given, const QStringList& known);

/** " (did you mean 'X'?)" with the nearest name; empty when none is near. */
QString didYouMean(const QString& given, const QStringList& known);

} // namespace Torvix
