#pragma once

#include <string>

namespace Torvix {

/**
 * The environment of this process. Names and values are UTF-8 here and in the locale's encoding
 * outside. A name that the locale cannot hold names no variable. There is no lock: one thread reads
 * and writes.
 */
class Environment
{
public:
    /** The value; empty both for an unset variable and for an empty one. */
    static std::string getVariable(const std::string& name);

    /** Sets the variable, over any value that it has. An empty name does nothing. */
    static void setVariable(const std::string& name, const std::string& value);

    static void unsetVariable(const std::string& name);
};

} // namespace Torvix
