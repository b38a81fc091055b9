#include "engine/ustring.h"

#include <cmath>

namespace KJS {

namespace {

/** The shortest digits that give the number back, and the decimal exponent: 0.d1d2... * 10^exponent. */
QByteArray shortestDigits(double number, int* exponent)
{
    QByteArray text = QByteArray::number(number, 'e', 16);
    for (int precision = 0; precision < 16; ++precision) {
        const QByteArray shorter = QByteArray::number(number, 'e', precision);
        if (shorter.toDouble() == number) {
            text = shorter;
            break;
        }
    }
    const int mark = text.indexOf('e');
    *exponent = text.mid(mark + 1).toInt() + 1;
    QByteArray digits = text.left(mark);
    digits.replace(".", "");
    return digits;
}

} // namespace

UString UString::from(double number)
{
    if (std::isnan(number))
        return UString("NaN");
    if (std::isinf(number))
        return UString(number > 0 ? "Infinity" : "-Infinity");
    if (number == 0)
        return UString("0");
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
