#pragma once

#include <QStringList>

namespace Torvix::Protocol {

/**
 * The texts of an item's path, from the top down: separated by dots; `\.` is a dot and `\\` a backslash
 * in a text. Three dots in a row are an ellipsis and belong to the text, so that menu entries can be
 * written as they are read: `File.Save As...`.
 */
QStringList splitItemPath(const QString& path);

/** The reverse. */
QString joinItemPath(const QStringList& texts);

} // namespace Torvix::Protocol
