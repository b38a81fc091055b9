#pragma once

#include <string>

namespace Gherkin {

/** Where a script defines a step function. */
struct ScriptLocation
{
    /** UTF-8. */
    std::string fileName;
    /** From 1; -1 if it is not known. */
    int line = -1;
};

} // namespace Gherkin
