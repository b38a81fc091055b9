#pragma once

#include <QString>

namespace Swinder {
class Cell;
class UString;
} // namespace Swinder

namespace Torvix {

/** The text of a cell of an `.xls` sheet: "?" for errors and for a cell without a value. */
QString cellToString(Swinder::Cell* cell);

QString toQString(const Swinder::UString& text);

} // namespace Torvix
