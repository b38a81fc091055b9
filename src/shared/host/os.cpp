#include "shared/host/os.h"

#include <sys/utsname.h>

namespace Torvix {

std::string OS::getName()
{
    utsname system;
    return uname(&system) == 0 ? system.sysname : "Unknown";
}

} // namespace Torvix
