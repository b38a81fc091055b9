#pragma once

#include "engine/rewriting/sourceedits.h"

#include <QString>

#include <functional>

namespace KJS::Rewriting {

/** The name under which stack traces show the prelude; such lines are not for scripts' authors. */
constexpr char preludeUrl[] = "torvix-prelude";

/**
 * An engine message as it would be for the author's text: what it quotes of the code, as in
 * "(evaluating '...')", is replaced by what stands there in the author's text, or left out when that
 * cannot be told. `map` belongs to the source that ran, `line` is where.
 */
QString cleanMessage(const QString& message, const EditMap* map, int line);

/** A stack trace without helper functions and with the columns of the author's text. */
QString cleanStack(const QString& stack, const std::function<const EditMap*(const QString& url)>& mapOf);

/** Whether a text shows something that rewriting put in. */
bool showsInsertion(const QString& text);

} // namespace KJS::Rewriting
