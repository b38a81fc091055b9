#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <QString>

namespace KJS::Rewriting {

/** Owns a JSStringRef. */
class JsString
{
public:
    explicit JsString(const QString& text)
        : m_string(JSStringCreateWithCharacters(reinterpret_cast<const JSChar*>(text.utf16()),
                                                static_cast<size_t>(text.size())))
    {
    }
    explicit JsString(const char* utf8) : m_string(JSStringCreateWithUTF8CString(utf8)) {}
    /** Takes over a reference; null gives an empty holder. */
    static JsString adopt(JSStringRef string) { return JsString(string, 0); }

    JsString(JsString&& other) noexcept : m_string(other.m_string) { other.m_string = nullptr; }
    JsString& operator=(JsString&& other) noexcept
    {
        std::swap(m_string, other.m_string);
        return *this;
    }
    JsString(const JsString&) = delete;
    JsString& operator=(const JsString&) = delete;
    ~JsString()
    {
        if (m_string)
            JSStringRelease(m_string);
    }

    operator JSStringRef() const { return m_string; }

    /** A null text when the holder is empty. */
    QString text() const
    {
        if (!m_string)
            return {};
        return QString(reinterpret_cast<const QChar*>(JSStringGetCharactersPtr(m_string)),
                       static_cast<int>(JSStringGetLength(m_string)));
    }

private:
    JsString(JSStringRef string, int) : m_string(string) {}
    JSStringRef m_string;
};

inline JSValueRef makeString(JSContextRef context, const QString& text)
{
    return JSValueMakeString(context, JsString(text));
}

/** String(value); a null text when that throws. May run script. */
inline QString stringOf(JSContextRef context, JSValueRef value)
{
    return JsString::adopt(JSValueToStringCopy(context, value, nullptr)).text();
}

/** A property by name; undefined when reading it throws. */
inline JSValueRef property(JSContextRef context, JSObjectRef object, const char* name)
{
    JSValueRef exception = nullptr;
    JSValueRef value = JSObjectGetProperty(context, object, JsString(name), &exception);
    return exception ? JSValueMakeUndefined(context) : value;
}

/** An element of an array-like object; undefined when reading it throws. */
inline JSValueRef element(JSContextRef context, JSObjectRef object, unsigned index)
{
    JSValueRef exception = nullptr;
    JSValueRef value = JSObjectGetPropertyAtIndex(context, object, index, &exception);
    return exception ? JSValueMakeUndefined(context) : value;
}

/** Null for values that are no objects. */
inline JSObjectRef asObject(JSContextRef context, JSValueRef value)
{
    // a JSObjectRef is a JSValueRef that is not const
    return value && JSValueIsObject(context, value) ? const_cast<JSObjectRef>(value) : nullptr;
}

} // namespace KJS::Rewriting
