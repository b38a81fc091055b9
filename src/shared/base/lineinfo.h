#pragma once

#include <QString>

namespace Torvix {

/** A file and a line in it. The line counts from 1; 0 or less means that it is not known. */
struct LineInfo
{
    QString file;
    int line = 0;
    QString function =
        QString(); ///< of a stack frame: its name; null outside of functions and in nameless ones
};

} // namespace Torvix
