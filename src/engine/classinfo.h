#pragma once

namespace KJS {

/**
 * The run-time class of C++ objects, for `inherits`: one static (or otherwise long-lived) record a
 * class. Records are compared by address.
 */
struct ClassInfo
{
    const char* className = nullptr;        ///< UTF-8; what className() answers by default
    const ClassInfo* parentClass = nullptr; ///< null for the root of a family
};

} // namespace KJS
