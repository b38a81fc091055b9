#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Torvix {

/**
 * Passes once over an XML document, token by token, and keeps nothing of it. The members of a workbook
 * that grow with its data are read by this: a tree of them takes ten times the memory and time.
 *
 * It checks no more than it needs. A document that breaks off just ends there. Names are compared as
 * they are written, with their prefix. All views lie in the document.
 */
class XmlScanner
{
public:
    enum Token {
        StartTag, /**< of an empty element too; its EndTag follows */
        EndTag,
        Text,  /**< characters or a CDATA section; characters that are all blanks are no token */
        Other, /**< a comment, a declaration, a processing instruction */
        End
    };

    explicit XmlScanner(std::string_view document) : m_document(document) {}

    Token next();

    /** Of a StartTag or EndTag. */
    std::string_view name() const { return m_name; }
    /** Of a StartTag: the value as it is written, if there is such an attribute. */
    std::optional<std::string_view> attribute(std::string_view name) const;
    /** Of a Text: the characters as they are written. */
    std::string_view text() const { return m_text; }

    /** After a StartTag: passes everything up to and including its EndTag. */
    void skipElement();

    /**
     * After a StartTag: passes the element. If it begins with a text, that is what text() then is;
     * else false.
     */
    bool readElementText();

    /** True when text() holds references to characters: see decodedText(). */
    bool needsDecoding() const;
    /** text() with its references replaced. One that is not known stays as it is written. */
    std::string decodedText() const;

private:
    Token scanMarkup();
    Token scanStartTag();
    Token scanSection(std::string_view opening, std::string_view closing, Token token);
    bool scanText();

    std::string_view m_document;
    std::size_t m_position = 0;
    std::string_view m_name;
    std::string_view m_attributes;
    std::string_view m_text;
    bool m_isCData = false;
    bool m_isEmptyElement = false; // its EndTag is due
};

} // namespace Torvix
