#include "protocol/token.h"

#include <QRandomGenerator>

namespace Torvix::Protocol {

QByteArray makeToken()
{
    QByteArray token(tokenSize, '\0');
    quint32 words[tokenSize / sizeof(quint32)];
    QRandomGenerator::system()->fillRange(words);
    memcpy(token.data(), words, sizeof words);
    return token;
}

QByteArray tokenToText(const QByteArray& token)
{
    return token.toHex();
}

QByteArray tokenFromText(const QByteArray& text)
{
    const QByteArray digits = text.trimmed().toLower();
    const QByteArray token = QByteArray::fromHex(digits);
    return digits.size() == 2 * tokenSize && token.toHex() == digits ? token : QByteArray();
}

bool sameToken(const QByteArray& expected, const QByteArray& shown)
{
    if (expected.size() != tokenSize || shown.size() != tokenSize)
        return false;
    // Volatile, so that the compiler cannot end the loop at the first difference.
    volatile uchar difference = 0;
    for (int i = 0; i < tokenSize; ++i)
        difference = difference | uchar(expected[i] ^ shown[i]);
    return difference == 0;
}

QString checkHello(const Frame& frame, const QByteArray& expectedToken, Role expectedRole, Hello* hello,
                   bool* tell)
{
    *tell = false;
    if (frame.kind != FrameKind::Hello || !decode(frame.body, hello) ||
        hello->magic != QLatin1String("torvix"))
        return QStringLiteral("the other side did not greet as it should");
    if (!expectedToken.isEmpty() && !sameToken(expectedToken, hello->token))
        return QStringLiteral("the other side did not show the right token");
    if (hello->role != expectedRole)
        return QStringLiteral("the other side is no %1")
            .arg(expectedRole == Role::Agent ? QStringLiteral("agent") : QStringLiteral("runner"));
    if (hello->major != majorVersion) {
        *tell = true;
        return QStringLiteral("protocol version %1.%2 does not go with %3.%4")
            .arg(hello->major)
            .arg(hello->minor)
            .arg(majorVersion)
            .arg(minorVersion);
    }
    return QString();
}

} // namespace Torvix::Protocol
