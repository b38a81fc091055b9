#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace Torvix {

/**
 * Command lines as a shell reads them, as far as quoting goes (POSIX.1-2017, Shell & Utilities, 2.2):
 * blanks, tabs and newlines part words; between single quotes every character stands for itself; between
 * double quotes a backslash takes the meaning from `"`, `\`, `$` and a back quote; outside of quotes it does
 * so for any character. Nothing else has a meaning: no variables, patterns or redirections.
 */

/** Null, with why in `*error`, when a quote is not closed or a backslash ends the text. */
std::optional<QStringList> splitShellWords(const QString& text, QString* error);

/** One text that splitShellWords() and a shell take apart into the same words. */
QString joinShellWords(const QStringList& words);

} // namespace Torvix
