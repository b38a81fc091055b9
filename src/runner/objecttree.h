#pragma once

#include <QJsonArray>
#include <QString>

namespace Torvix {

/** The objects of the current application, a line each, children indented: class, object name, text,
 *  and whether it is hidden or disabled. Bounded; says what it leaves out. */
QString objectTreeText();

/** The same as nested JSON objects with "class", "name", "realName" and "properties". */
QJsonArray objectTreeJson();

} // namespace Torvix
