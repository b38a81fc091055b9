#pragma once

#include <QByteArray>

namespace KJS::Rewriting {

// Script files that are built into the library (embed.cmake), as UTF-8; the arrays are not copied.

/** acorn, as the system's package has it. */
QByteArray embeddedParser();
/** The rewriting modules in js/, in order. */
QByteArray embeddedRewriter();
/** The prelude of script contexts, js/prelude/, in order. */
QByteArray embeddedPrelude();
/** Changes whenever one of the above does. */
QByteArray embeddedVersion();

} // namespace KJS::Rewriting
