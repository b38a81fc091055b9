#include "engine/ustring.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

namespace KJS {

namespace {

/** The shortest digits that give the number back, and the decimal exponent: 0.d1d2... * 10^exponent. */
QByteArray shortestDigits(double number, int* exponent)
{
    char text[32];
    const char* const end =
        std::to_chars(std::begin(text), std::end(text), number, std::chars_format::scientific).ptr;
    const char* const mark = std::find<const char*>(text, end, 'e');
    const char* const power = mark[1] == '+' ? mark + 2 : mark + 1;
    std::from_chars(power, end, *exponent);
    ++*exponent;
    QByteArray digits(text, static_cast<int>(mark - text));
    return digits.size() > 1 ? digits.remove(1, 1) : digits; // the point
}

/** Beyond it a double may not hold every integer, and the text is not that of the integer. */
constexpr double largestInteger = 9007199254740992.0;

} // namespace

UString UString::from(double number)
{
    if (std::isnan(number))
        return UString("NaN");
    if (std::isinf(number))
        return UString(number > 0 ? "Infinity" : "-Infinity");
    if (std::fabs(number) < largestInteger && number == std::trunc(number))
        return UString(QString::number(static_cast<qint64>(number)));
    int point = 0;
    QByteArray digits = shortestDigits(std::fabs(number), &point);
    const int count = digits.size();
    QByteArray text;
    if (count <= point && point <= 21) {
        text = digits + QByteArray(point - count, '0');
    } else if (0 < point && point <= 21) {
        text = digits.left(point) + '.' + digits.mid(point);
    } else if (-6 < point && point <= 0) {
        text = "0." + QByteArray(-point, '0') + digits;
    } else {
        text = digits.left(1);
        if (count > 1)
            text += '.' + digits.mid(1);
        text += point - 1 < 0 ? "e-" : "e+";
        text += QByteArray::number(std::abs(point - 1));
    }
    return UString(QString::fromLatin1(number < 0 ? '-' + text : text));
}

const char* UString::ascii() const
{
    m_ascii = m_text.toLatin1();
    return m_ascii.constData();
}

UString& UString::operator+=(const UString& other)
{
    m_text += other.m_text;
    return *this;
}

} // namespace KJS
