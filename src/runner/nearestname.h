#pragma once

#include <QString>
#include <QStringList>

namespace Torvix {

/** " (did you mean 'X'?)" with the name of `known` that is nearest to a mistyped one; empty when none is
 * near.
 */
QString didYouMean(const QString& given, const QStringList& known);

} // namespace Torvix
