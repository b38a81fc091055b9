#pragma once

namespace Torvix {

/** A position in a script: line from 1, column from 0, and the engine's source id. -1 is unknown. */
struct DebuggerFrame
{
    int line = -1;
    int column = -1;
    int sourceId = -1;

    friend bool operator==(const DebuggerFrame& a, const DebuggerFrame& b)
    {
        return a.line == b.line && a.column == b.column && a.sourceId == b.sourceId;
    }
};

} // namespace Torvix
