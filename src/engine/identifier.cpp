#include "engine/identifier.h"

#include "engine/jsc/identifiertable.h"

#include <QHash>

#include <array>
#include <cstring>

namespace KJS {

namespace {

using Table = QHash<QString, IdentifierEntry*>;

// Never destroyed: identifiers in static objects may outlive any order of destruction.
Table& table()
{
    static auto* const names = new Table;
    return *names;
}

constexpr std::size_t recentSize = 1024; // a power of two

struct Recent
{
    std::array<Identifier, recentSize> names;
};

Recent& recent()
{
    static auto* const cache = new Recent;
    return *cache;
}

std::size_t hashOf(const JSChar* characters, std::size_t length)
{
    std::uint32_t hash = 2166136261u;
    for (std::size_t i = 0; i < length; ++i)
        hash = (hash ^ characters[i]) * 16777619u;
    return hash ^ (hash >> 15);
}

} // namespace

Identifier IdentifierEntry::intern(const QString& text)
{
    if (text.isNull())
        return Identifier();
    IdentifierEntry*& slot = table()[text];
    if (!slot) {
        slot = new IdentifierEntry;
        slot->text = text;
        slot->key = JscString(text);
    }
    ++slot->references;
    return Identifier(slot);
}

Identifier IdentifierEntry::fromCallback(JSStringRef name)
{
    const JSChar* const characters = JSStringGetCharactersPtr(name);
    const std::size_t length = JSStringGetLength(name);
    Identifier& slot = recent().names[hashOf(characters, length) & (recentSize - 1)];
    if (slot.m_entry && static_cast<std::size_t>(slot.m_entry->text.size()) == length &&
        std::memcmp(slot.m_entry->text.constData(), characters, length * sizeof(JSChar)) == 0)
        return slot;
    slot = intern(toQString(name));
    return slot;
}

void IdentifierEntry::destroy(IdentifierEntry* entry)
{
    table().remove(entry->text);
    delete entry;
}

Identifier::Identifier(const char* utf8) : Identifier(QString::fromUtf8(utf8)) {}

Identifier::Identifier(const UString& text) : Identifier(text.qstring()) {}

Identifier::Identifier(const QString& text) : Identifier(IdentifierEntry::intern(text)) {}

Identifier::Identifier(const Identifier& other) : m_entry(other.m_entry)
{
    if (m_entry)
        ++m_entry->references;
}

Identifier& Identifier::operator=(Identifier other) noexcept
{
    std::swap(m_entry, other.m_entry);
    return *this;
}

Identifier::~Identifier()
{
    if (m_entry && --m_entry->references == 0)
        IdentifierEntry::destroy(m_entry);
}

Identifier Identifier::from(unsigned index)
{
    return Identifier(QString::number(index));
}

const QString& Identifier::qstring() const
{
    static const QString nullText;
    return m_entry ? m_entry->text : nullText;
}

uint32_t Identifier::toArrayIndex(bool* ok) const
{
    const QString& text = qstring();
    const uint32_t index = text.toUInt(ok);
    // canonical only, and 2^32 - 1 is no index
    if (*ok && (index == 0xFFFFFFFFu || QString::number(index) != text))
        *ok = false;
    return *ok ? index : 0;
}

} // namespace KJS
