#pragma once

#include <string>

namespace Torvix {

/** The operating system that this process runs on. */
class OS
{
public:
    /** The system's name as uname(2) gives it, such as "Linux"; "Unknown" if it gives none. */
    static std::string getName();
};

} // namespace Torvix
