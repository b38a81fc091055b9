#pragma once

namespace Torvix::Agent {

class Registry;

/** The class whose static members are the global functions and properties of scripts. */
struct GlobalFunctions
{
};

constexpr const char* globalClassName = "Global";

/** Registers the actions and the application object as members of the global class. */
void bindGlobalClass(Registry& registry);

} // namespace Torvix::Agent
