#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <QString>

namespace KJS {

/** Owns one reference of an engine string. */
class JscString
{
public:
    JscString() = default;
    explicit JscString(const QString& text)
        : m_string(JSStringCreateWithCharacters(reinterpret_cast<const JSChar*>(text.utf16()),
                                                static_cast<size_t>(text.size())))
    {
    }
    JscString(JscString&& other) noexcept : m_string(other.m_string) { other.m_string = nullptr; }
    JscString& operator=(JscString&& other) noexcept
    {
        std::swap(m_string, other.m_string);
        return *this;
    }
    ~JscString()
    {
        if (m_string)
            JSStringRelease(m_string);
    }

    static JscString adopt(JSStringRef string)
    {
        JscString result;
        result.m_string = string;
        return result;
    }

    JSStringRef get() const { return m_string; }
    explicit operator bool() const { return m_string != nullptr; }

private:
    JSStringRef m_string = nullptr;
};

/** Never null; an empty engine string gives an empty QString. */
inline QString toQString(JSStringRef string)
{
    const int length = static_cast<int>(JSStringGetLength(string));
    if (length == 0)
        return QStringLiteral("");
    return QString(reinterpret_cast<const QChar*>(JSStringGetCharactersPtr(string)), length);
}

} // namespace KJS
