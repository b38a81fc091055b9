#pragma once

#include <memory>
#include <string>
#include <utility>

namespace Swinder {

/** One UTF-16 code unit. */
using UChar = char16_t;

/**
 * A text of a workbook, in UTF-16. Copies share the characters, so that a text which many cells show
 * is held once. The empty text and no text are the same.
 */
class UString
{
public:
    UString() = default;
    explicit UString(std::u16string text)
        : m_text(text.empty() ? nullptr : std::make_shared<const std::u16string>(std::move(text)))
    {
    }

    /** The code units; never null, and ended by a 0. Valid as long as a copy of this text lives. */
    const UChar* data() const { return m_text ? m_text->data() : u""; }

    /** The number of code units, without the 0 at the end. */
    int length() const { return m_text ? static_cast<int>(m_text->size()) : 0; }

    bool isEmpty() const { return !m_text; }

    friend bool operator==(const UString& a, const UString& b)
    {
        return a.m_text == b.m_text || (a.m_text && b.m_text && *a.m_text == *b.m_text);
    }
    friend bool operator!=(const UString& a, const UString& b) { return !(a == b); }

private:
    std::shared_ptr<const std::u16string> m_text;
};

} // namespace Swinder
