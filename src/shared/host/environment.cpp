#include "shared/host/environment.h"

#include "shared/host/charset.h"

#include <cstdlib>

namespace Torvix {

std::string Environment::getVariable(const std::string& name)
{
    const std::string localName = utf8ToLocal8Bit(name);
    if (localName.empty())
        return {};
    const char* value = std::getenv(localName.c_str());
    return value ? local8BitToUTF8(value) : std::string();
}

void Environment::setVariable(const std::string& name, const std::string& value)
{
    const std::string localName = utf8ToLocal8Bit(name);
    if (!localName.empty())
        setenv(localName.c_str(), utf8ToLocal8Bit(value).c_str(), 1);
}

void Environment::unsetVariable(const std::string& name)
{
    const std::string localName = utf8ToLocal8Bit(name);
    if (!localName.empty())
        unsetenv(localName.c_str());
}

} // namespace Torvix
