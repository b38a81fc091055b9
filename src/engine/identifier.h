#pragma once

#include "engine/ustring.h"

#include <QHashFunctions>

#include <cstdint>

namespace KJS {

struct IdentifierEntry;

/**
 * The name of a property. Names are interned: two identifiers with the same text share one entry, so
 * a comparison is one of pointers, and the engine's own key for the name is made once. Keep the ones
 * that are used often (in static tables or members) rather than making them anew for each access.
 */
class TORVIXKJS_EXPORT Identifier
{
public:
    /** The null identifier; it names nothing, and is not the empty name. */
    Identifier() = default;
    Identifier(const char* utf8);
    Identifier(const UString& text);
    Identifier(const QString& text);
    Identifier(const Identifier& other);
    Identifier(Identifier&& other) noexcept : m_entry(other.m_entry) { other.m_entry = nullptr; }
    Identifier& operator=(Identifier other) noexcept;
    ~Identifier();

    static Identifier null() { return Identifier(); }
    /** The name of an array element. */
    static Identifier from(unsigned index);

    bool isNull() const { return m_entry == nullptr; }
    bool isEmpty() const { return qstring().isEmpty(); }
    const QString& qstring() const;
    UString ustring() const { return UString(qstring()); }
    QByteArray utf8() const { return qstring().toUtf8(); }

    /** The element index that the name is in canonical form; `*ok` tells whether it is one. */
    uint32_t toArrayIndex(bool* ok) const;

    friend bool operator==(const Identifier& a, const Identifier& b) { return a.m_entry == b.m_entry; }
    friend bool operator!=(const Identifier& a, const Identifier& b) { return a.m_entry != b.m_entry; }
    /** Compares texts without interning the second. */
    friend bool operator==(const Identifier& a, const char* b) { return a.qstring() == QLatin1String(b); }
    friend bool operator!=(const Identifier& a, const char* b) { return !(a == b); }
    friend uint qHash(const Identifier& name, uint seed = 0) { return ::qHash(quintptr(name.m_entry), seed); }

private:
    friend struct IdentifierEntry;
    explicit Identifier(IdentifierEntry* entry) : m_entry(entry) {}

    IdentifierEntry* m_entry = nullptr;
};

} // namespace KJS
