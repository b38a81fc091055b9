#include "shared/testdata/xmlscanner.h"

#include <array>
#include <cstdint>

namespace Torvix {

namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

bool endsName(char c)
{
    return isBlank(c) || c == '>' || c == '/' || c == '=';
}

void appendUtf8(std::string& out, std::uint32_t code)
{
    const auto byte = [&](std::uint32_t bits) { out += static_cast<char>(bits); };
    if (code < 0x80) {
        byte(code);
    } else if (code < 0x800) {
        byte(0xC0 | code >> 6);
        byte(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        byte(0xE0 | code >> 12);
        byte(0x80 | (code >> 6 & 0x3F));
        byte(0x80 | (code & 0x3F));
    } else {
        byte(0xF0 | code >> 18);
        byte(0x80 | (code >> 12 & 0x3F));
        byte(0x80 | (code >> 6 & 0x3F));
        byte(0x80 | (code & 0x3F));
    }
}

/** The number of a reference such as "#65" or "#x41". */
std::optional<std::uint32_t> characterNumber(std::string_view reference)
{
    const bool hex = reference.size() > 1 && (reference[1] == 'x' || reference[1] == 'X');
    const std::string_view digits = reference.substr(hex ? 2 : 1);
    std::uint32_t number = 0;
    for (const char c : digits) {
        const int lower = c | 0x20;
        int digit = 0;
        if (c >= '0' && c <= '9')
            digit = c - '0';
        else if (hex && lower >= 'a' && lower <= 'f')
            digit = lower - 'a' + 10;
        else
            return std::nullopt;
        number = number * (hex ? 16 : 10) + static_cast<std::uint32_t>(digit);
        if (number > 0x10FFFF)
            return std::nullopt;
    }
    return digits.empty() ? std::nullopt : std::optional<std::uint32_t>(number);
}

/** Appends what the reference (between & and ;) stands for; false if that is not known. */
bool appendReference(std::string& out, std::string_view reference)
{
    struct Named
    {
        std::string_view name;
        char character;
    };
    static constexpr std::array<Named, 5> Known{
        {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};
    for (const Named& known : Known) {
        if (known.name == reference) {
            out += known.character;
            return true;
        }
    }
    if (reference.empty() || reference[0] != '#')
        return false;
    const std::optional<std::uint32_t> number = characterNumber(reference);
    if (number)
        appendUtf8(out, *number);
    return number.has_value();
}

} // namespace

XmlScanner::Token XmlScanner::next()
{
    if (m_isEmptyElement) {
        m_isEmptyElement = false;
        return EndTag;
    }
    while (m_position < m_document.size()) {
        if (m_document[m_position] == '<')
            return scanMarkup();
        if (scanText())
            return Text;
    }
    return End;
}

bool XmlScanner::scanText()
{
    const std::size_t end = std::min(m_document.find('<', m_position), m_document.size());
    m_text = m_document.substr(m_position, end - m_position);
    m_isCData = false;
    m_position = end;
    for (const char c : m_text) {
        if (!isBlank(c))
            return true;
    }
    return false;
}

XmlScanner::Token XmlScanner::scanMarkup()
{
    const std::string_view rest = m_document.substr(m_position, 9);
    if (rest.size() < 2) {
        m_position = m_document.size();
        return End;
    }
    if (rest[1] == '/') {
        const std::size_t end = std::min(m_document.find('>', m_position), m_document.size());
        m_name = m_document.substr(m_position + 2, end - m_position - 2);
        while (!m_name.empty() && isBlank(m_name.back()))
            m_name.remove_suffix(1);
        m_position = std::min(end + 1, m_document.size());
        return EndTag;
    }
    if (rest[1] == '?')
        return scanSection("<?", "?>", Other);
    if (rest[1] != '!')
        return scanStartTag();
    if (rest.substr(0, 4) == "<!--")
        return scanSection("<!--", "-->", Other);
    if (rest == "<![CDATA[")
        return scanSection("<![CDATA[", "]]>", Text);
    return scanSection("<!", ">", Other);
}

XmlScanner::Token XmlScanner::scanSection(std::string_view opening, std::string_view closing, Token token)
{
    const std::size_t begin = m_position + opening.size();
    const std::size_t end = m_document.find(closing, begin);
    if (end == std::string_view::npos) {
        m_position = m_document.size();
        return End;
    }
    m_text = m_document.substr(begin, end - begin);
    m_isCData = true;
    m_position = end + closing.size();
    return token;
}

XmlScanner::Token XmlScanner::scanStartTag()
{
    const std::size_t size = m_document.size();
    std::size_t at = m_position + 1;
    while (at < size && !endsName(m_document[at]))
        ++at;
    m_name = m_document.substr(m_position + 1, at - m_position - 1);
    const std::size_t attributes = at;
    while (at < size && m_document[at] != '>') {
        const char c = m_document[at];
        if (c == '"' || c == '\'') // a > in a value does not end the tag
            at = std::min(m_document.find(c, at + 1), size - 1);
        ++at;
    }
    if (at >= size) {
        m_position = size;
        return End;
    }
    m_isEmptyElement = m_document[at - 1] == '/';
    m_attributes = m_document.substr(attributes, at - attributes - (m_isEmptyElement ? 1 : 0));
    m_position = at + 1;
    return StartTag;
}

std::optional<std::string_view> XmlScanner::attribute(std::string_view name) const
{
    std::size_t at = 0;
    const std::size_t size = m_attributes.size();
    while (at < size) {
        while (at < size && (isBlank(m_attributes[at]) || m_attributes[at] == '/'))
            ++at;
        const std::size_t begin = at;
        while (at < size && !endsName(m_attributes[at]))
            ++at;
        const std::string_view found = m_attributes.substr(begin, at - begin);
        while (at < size && (isBlank(m_attributes[at]) || m_attributes[at] == '='))
            ++at;
        if (at >= size || (m_attributes[at] != '"' && m_attributes[at] != '\''))
            return std::nullopt;
        const std::size_t end = m_attributes.find(m_attributes[at], at + 1);
        if (end == std::string_view::npos)
            return std::nullopt;
        if (found == name)
            return m_attributes.substr(at + 1, end - at - 1);
        at = end + 1;
    }
    return std::nullopt;
}

void XmlScanner::skipElement()
{
    for (std::size_t depth = 1; depth > 0;) {
        switch (next()) {
        case StartTag:
            ++depth;
            break;
        case EndTag:
            --depth;
            break;
        case End:
            return;
        default:
            break;
        }
    }
}

bool XmlScanner::readElementText()
{
    const Token first = next();
    if (first == EndTag || first == End)
        return false;
    if (first == StartTag)
        skipElement();
    const std::string_view text = m_text;
    const bool isCData = m_isCData;
    skipElement();
    m_text = text;
    m_isCData = isCData;
    return first == Text;
}

bool XmlScanner::needsDecoding() const
{
    return !m_isCData && m_text.find('&') != std::string_view::npos;
}

std::string XmlScanner::decodedText() const
{
    constexpr std::size_t LongestReference = 12;
    if (m_isCData)
        return std::string(m_text);
    std::string decoded;
    std::size_t at = 0;
    while (at < m_text.size()) {
        const std::size_t ampersand = std::min(m_text.find('&', at), m_text.size());
        decoded.append(m_text, at, ampersand - at);
        if (ampersand == m_text.size())
            break;
        const std::string_view ahead = m_text.substr(ampersand + 1, LongestReference);
        const std::size_t semicolon = ahead.find(';');
        const bool known =
            semicolon != std::string_view::npos && appendReference(decoded, ahead.substr(0, semicolon));
        if (!known)
            decoded += '&';
        at = ampersand + 1 + (known ? semicolon + 1 : 0);
    }
    return decoded;
}

} // namespace Torvix
