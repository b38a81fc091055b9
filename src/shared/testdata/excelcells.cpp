#include "shared/testdata/excelcells.h"

#include "spreadsheet/sheet.h"

namespace Torvix {

QString toQString(const Swinder::UString& text)
{
    return QString::fromUtf16(text.data(), text.length());
}

QString cellToString(Swinder::Cell* cell)
{
    const Swinder::Value& value = cell->value();
    switch (value.type()) {
    case Swinder::Value::Boolean:
        return value.asBoolean() ? QStringLiteral("true") : QStringLiteral("false");
    case Swinder::Value::Integer:
        return QString::number(value.asInteger());
    case Swinder::Value::Float:
        return QString::number(value.asFloat(), 'g', 6);
    case Swinder::Value::String:
    case Swinder::Value::RichText:
        return toQString(value.asString());
    default:
        return QStringLiteral("?");
    }
}

} // namespace Torvix
