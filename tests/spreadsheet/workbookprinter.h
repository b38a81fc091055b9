#pragma once

#include "spreadsheet/workbook.h"

#include <string>

/** UTF-16 to UTF-8, for well-formed text. */
inline std::string utf8(const Swinder::UString& text)
{
    std::string bytes;
    for (int i = 0; i < text.length(); ++i) {
        char32_t code = text.data()[i];
        if (code >= 0xD800 && code < 0xDC00 && i + 1 < text.length())
            code = 0x10000 + ((code - 0xD800) << 10) + (text.data()[++i] - 0xDC00);
        if (code < 0x80) {
            bytes += static_cast<char>(code);
            continue;
        }
        const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
        bytes += static_cast<char>((0xF00 >> (more + 1) & 0xFF) | code >> (6 * more));
        for (int k = more - 1; k >= 0; --k)
            bytes += static_cast<char>(0x80 | (code >> (6 * k) & 0x3F));
    }
    return bytes;
}

/** A cell as `type:value`, and "-" where there is none, so that one comparison holds both. */
inline std::string shown(Swinder::Sheet* sheet, unsigned column, unsigned row)
{
    using Swinder::Value;
    const Swinder::Cell* cell = sheet ? sheet->cell(column, row, false) : nullptr;
    if (!cell)
        return "-";
    const Value& value = cell->value();
    char number[64];
    switch (value.type()) {
    case Value::Boolean:
        return value.asBoolean() ? "bool:true" : "bool:false";
    case Value::Integer:
        return "int:" + std::to_string(value.asInteger());
    case Value::Float:
        std::snprintf(number, sizeof number, "float:%.15g", value.asFloat());
        return number;
    case Value::String:
        return "text:" + utf8(value.asString());
    case Value::RichText:
        return "rich:" + utf8(value.asString());
    case Value::Error:
        return "error:" + std::to_string(value.errorCode());
    default:
        return "empty";
    }
}
