#pragma once

namespace Gherkin {

/** A place in a feature file. Both count from 1, columns in Unicode code points; 0 where it is not known. */
struct Location
{
    int line = 0;
    int column = 0;
};

inline bool operator==(const Location& a, const Location& b)
{
    return a.line == b.line && a.column == b.column;
}

} // namespace Gherkin
