#pragma once

#include "shared/base/result.h"

#include <QString>

#include <optional>

namespace Torvix {

/** The text as it stands in a settings file: between quotes, with its quotes and line ends escaped. */
QString quotedValue(const QString& text);

/** Reads the quoted text that begins at `*at`, and moves that behind its closing quote, or to where it
 *  goes wrong. */
Result<QString> readQuotedValue(const QString& raw, int* at);

/** A decimal number, of which 0 is false, or "true" or "false" in any case; it may be quoted. None for
 *  any other text. */
std::optional<bool> boolValue(const QString& raw);

} // namespace Torvix
