#pragma once

#include <QtGlobal>

namespace Torvix {

/**
 * How a value is held or passed, beside its class. Compared whole, the extra word included.
 *
 * An object of the application is a pointer (Pointer), reached through one (Reference) or held by
 * the agent (neither): a plain value. For an argument the same bits say how it wants its value.
 */
struct ObjectAttribute
{
    enum Flag : quint32 {
        None = 0,
        /** Of an argument. */
        Constant = 1,
        /** Of an object; the same bit. */
        Reference = 1,
        /** Passed by pointer or reference. A string value always counts as indirect. */
        Indirect = 2,
        /** Of an object; the same bit. */
        Pointer = 2,
        /** Of an argument: it takes a sequence of its class. */
        List = 16,
        /** Of an object; the same bit. */
        Array = 16
    };

    quint32 flags = None;
    /** Levels of indirection. */
    quint32 extra = 0;

    bool has(Flag flag) const { return (flags & flag) != 0; }
    bool isIndirect() const { return has(Indirect); }

    friend bool operator==(const ObjectAttribute& a, const ObjectAttribute& b)
    {
        return a.flags == b.flags && a.extra == b.extra;
    }
    friend bool operator!=(const ObjectAttribute& a, const ObjectAttribute& b) { return !(a == b); }
};

} // namespace Torvix
