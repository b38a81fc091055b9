#pragma once

#include "shared/testdata/packedcells.h"

#include <string_view>

namespace Torvix {

/**
 * Splits a logical line of delimited text, which must lie inside the base of `cells`, and appends its
 * cells to them. Returns their number.
 *
 * Quotes are taken off wherever they stand, so that `ab"cd"ef` is one cell of six characters; inside
 * them, separators are text and a doubled quote is one. A first cell that holds no character makes no
 * cell, unless a separator follows it. `sep` is an ASCII character.
 */
int splitCells(std::string_view line, char sep, PackedCells& cells);

} // namespace Torvix
