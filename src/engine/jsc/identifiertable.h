#pragma once

#include "engine/identifier.h"
#include "engine/jsc/jscstring.h"

namespace KJS {

/** One interned name. */
struct IdentifierEntry
{
    QString text;
    JscString key; ///< for the engine; made with the entry
    int references = 0;

    static JSStringRef keyOf(const Identifier& name) { return name.m_entry->key.get(); }
    static Identifier intern(const QString& text);
    /**
     * The identifier of a name that the engine hands to a call-back: each time a string of its own, so
     * that the look-up goes by content. Names used lately are found without a copy.
     */
    static Identifier fromCallback(JSStringRef name);
    static void destroy(IdentifierEntry* entry);
};

} // namespace KJS
