#pragma once

#include "agent/reflection/typename.h"

namespace Torvix::Agent {

/** The class whose static members are the global functions and properties of scripts. */
struct GlobalFunctions
{
};

constexpr const char* globalClassName = "Global";

template <>
struct TypeName<GlobalFunctions>
{
    static QByteArray get() { return globalClassName; }
};

} // namespace Torvix::Agent
