#include "shared/host/charset.h"

#include <cstdio>
#include <iconv.h>

namespace Torvix {

namespace {

/** An open conversion descriptor, closed with the object. */
class Converter
{
public:
    Converter(const char* from, const char* to) : m_descriptor(iconv_open(to, from)) {}
    ~Converter()
    {
        if (isOpen())
            iconv_close(m_descriptor);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool isOpen() const { return m_descriptor != iconv_t(-1); }

    /** Converts all of `text` in one call, or gives false with errno set. */
    bool convert(std::string text, std::string& result)
    {
        // Enough for every encoding that a locale can have; what does not fit fails as a whole.
        result.resize(text.size() * 4);
        char* in = text.data();
        char* out = result.data();
        size_t inLeft = text.size();
        size_t outLeft = result.size();
        if (iconv(m_descriptor, &in, &inLeft, &out, &outLeft) == size_t(-1) || inLeft > 0)
            return false;
        result.resize(result.size() - outLeft);
        return true;
    }

private:
    iconv_t m_descriptor;
};

} // namespace

std::string mbs2mbs(const std::string& text, const char* from, const char* to)
{
    if (text.empty())
        return {};
    Converter converter(from, to);
    if (!converter.isOpen()) {
        std::perror("iconv_open");
        return {};
    }
    std::string result;
    if (!converter.convert(text, result)) {
        std::perror("iconv");
        return {};
    }
    return result;
}

std::string utf8ToLocal8Bit(const std::string& text)
{
    return mbs2mbs(text, "UTF-8", "");
}

std::string local8BitToUTF8(const std::string& text)
{
    return mbs2mbs(text, "", "UTF-8");
}

} // namespace Torvix
