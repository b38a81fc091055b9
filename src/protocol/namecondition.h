#pragma once

#include "protocol/codec.h"

#include <QString>
#include <QVector>

namespace Torvix::Protocol {

enum class Match { Exact = 0, RegularExpression = 1, Wildcard = 2, Last = Wildcard };

/**
 * One condition of a real name. The property's value is compared as text: booleans as `true` and
 * `false`, numbers without superfluous digits, an enumeration by its key or number. A regular
 * expression (QRegularExpression, Unicode) and a wildcard (`*`, `?`, `[...]`) match the whole text.
 *
 * Keys with a meaning of their own: `type` the class name as the object itself has it, `name` the
 * object name, `visible`, `occurrence` (the n-th match from 1, in tree order), and the nested
 * `window` (the top-level window), `container` (an ancestor), `buddy` (the widget of a label).
 */
struct NameCondition
{
    QString property;
    Match match = Match::Exact;
    QString text;
    /** Of a nested name; then match and text are not used. */
    bool isNested = false;
    QVector<NameCondition> nested;
    TORVIX_WIRE_FIELDS(property, match, text, isNested, nested)
};

/** A real name: all conditions must hold. */
using NameConditions = QVector<NameCondition>;

} // namespace Torvix::Protocol
