#include "spreadsheet/codepage.h"

#include <cerrno>
#include <iconv.h>

namespace Swinder {

namespace {

constexpr char16_t Replacement = 0xFFFD;

std::string iconvName(unsigned number)
{
    switch (number) {
    case 367:
        return "US-ASCII";
    case 10000:
    case 32768: // what BIFF5 of the Macintosh writes
        return "MACINTOSH";
    case 10007:
        return "MAC-CYRILLIC";
    case 10017:
        return "MAC-UK";
    case 10029:
        return "MAC-CENTRALEUROPE";
    case 32769: // what the oldest Windows files write
        return "CP1252";
    default:
        return "CP" + std::to_string(number);
    }
}

} // namespace

class CodePage::Converter
{
public:
    explicit Converter(const std::string& name) : m_handle(iconv_open("UTF-16LE", name.c_str())) {}
    ~Converter()
    {
        if (isOpen())
            iconv_close(m_handle);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool isOpen() const { return m_handle != iconv_t(-1); }

    std::u16string decode(ByteView text)
    {
        std::u16string result;
        std::string in(text.data, text.data + text.size);
        char* from = in.data();
        std::size_t left = in.size();
        iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
        while (left > 0) {
            const bool stuck = !step(from, left, result) && errno != E2BIG;
            if (stuck) {
                result += Replacement;
                ++from;
                --left;
            }
        }
        return result;
    }

private:
    bool step(char*& from, std::size_t& left, std::u16string& result)
    {
        char buffer[512];
        char* to = buffer;
        std::size_t room = sizeof buffer;
        const bool done = iconv(m_handle, &from, &left, &to, &room) != std::size_t(-1);
        const int error = errno;
        for (const char* b = buffer; b + 1 < to; b += 2)
            result += static_cast<char16_t>(static_cast<unsigned char>(b[0]) |
                                            static_cast<unsigned char>(b[1]) << 8);
        errno = error;
        return done;
    }

    iconv_t m_handle;
};

CodePage::CodePage(unsigned number) : m_converter(std::make_unique<Converter>(iconvName(number)))
{
    if (!m_converter->isOpen())
        m_converter = std::make_unique<Converter>("CP1252");
}

CodePage::~CodePage() = default;
CodePage::CodePage(CodePage&&) noexcept = default;
CodePage& CodePage::operator=(CodePage&&) noexcept = default;

std::u16string CodePage::decode(ByteView text)
{
    if (m_converter->isOpen())
        return m_converter->decode(text);
    return std::u16string(text.data, text.data + text.size); // no conversions on this system at all
}

} // namespace Swinder
