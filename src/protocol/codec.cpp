#include "protocol/codec.h"

#include <QTextCodec>
#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace Torvix::Protocol {

namespace {

constexpr int maxDepth = 64;

enum MajorType { Unsigned = 0, Negative = 1, Bytes = 2, Text = 3, Array = 4, Simple = 7 };

/** What stands before each item: its type and its value or length. */
struct Head
{
    int majorType = 0;
    int info = 0;
    quint64 argument = 0;
};

constexpr int falseInfo = 20, trueInfo = 21, largestShort = 23, longestInfo = 27;

/** Passes over a head; false when there is none of definite length before the end. */
bool readHead(const uchar** at, const uchar* end, Head* head)
{
    if (*at == end)
        return false;
    head->majorType = **at >> 5;
    head->info = *(*at)++ & 31;
    head->argument = quint64(head->info);
    if (head->info <= largestShort)
        return true;
    if (head->info > longestInfo)
        return false;
    const int size = 1 << (head->info - largestShort - 1);
    if (end - *at < size)
        return false;
    head->argument = 0;
    for (int i = 0; i < size; ++i)
        head->argument = head->argument << 8 | *(*at)++;
    return true;
}

void writeHead(QByteArray* out, int majorType, quint64 argument)
{
    const char type = char(majorType << 5);
    if (argument <= largestShort) {
        out->append(char(type | int(argument)));
        return;
    }
    const int power = argument >> 32 ? 3 : argument >> 16 ? 2 : argument >> 8 ? 1 : 0;
    out->append(char(type | (largestShort + 1 + power)));
    for (int shift = (8 << power) - 8; shift >= 0; shift -= 8)
        out->append(char(argument >> shift));
}

/** A forward scan over CBOR items that never looks behind the end. */
class Scanner
{
public:
    explicit Scanner(const QByteArray& body)
        : m_at(reinterpret_cast<const uchar*>(body.constData()))
        , m_end(m_at + body.size())
    {
    }

    bool atEnd() const { return m_at == m_end; }

    bool skipItem(int depth)
    {
        Head head;
        if (depth > maxDepth || !readHead(&m_at, m_end, &head))
            return false;
        switch (head.majorType) {
        case Unsigned:
        case Negative:
            return head.argument <= quint64(std::numeric_limits<qint64>::max());
        case Bytes:
        case Text:
            if (head.argument > left())
                return false;
            m_at += head.argument;
            return true;
        case Array:
            return skipArray(head.argument, depth);
        case Simple:
            return head.info == falseInfo || head.info == trueInfo || head.info == longestInfo;
        default:
            return false;
        }
    }

private:
    quint64 left() const { return quint64(m_end - m_at); }

    bool skipArray(quint64 count, int depth)
    {
        // Each item takes a byte at least, so that this bounds the loop by the size of the frame.
        if (count > left())
            return false;
        for (; count > 0; --count)
            if (!skipItem(depth + 1))
                return false;
        return true;
    }

    const uchar* m_at;
    const uchar* m_end;
};

/** False for bytes that are no UTF-8. */
bool readUtf8(const char* bytes, int size, QString* text)
{
    const bool isAscii = std::none_of(bytes, bytes + size, [](char byte) { return uchar(byte) >= 0x80; });
    if (isAscii) {
        *text = QString::fromLatin1(bytes, size);
        return true;
    }
    static QTextCodec* const utf8 = QTextCodec::codecForName("UTF-8");
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    *text = utf8->toUnicode(bytes, size, &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

} // namespace

bool isWellFormed(const QByteArray& body)
{
    Scanner scanner(body);
    return scanner.skipItem(0) && scanner.atEnd();
}

void Encoder::put(const QString& value)
{
    const QByteArray utf8 = value.toUtf8();
    writeHead(m_out, Text, quint64(utf8.size()));
    m_out->append(utf8);
}

void Encoder::put(const QByteArray& value)
{
    writeHead(m_out, Bytes, quint64(value.size()));
    m_out->append(value);
}

void Encoder::putArrayHead(quint64 count)
{
    writeHead(m_out, Array, count);
}

void Encoder::putBool(bool value)
{
    writeHead(m_out, Simple, value ? trueInfo : falseInfo);
}

void Encoder::putDouble(double value)
{
    char bytes[1 + sizeof value] = {char(Simple << 5 | longestInfo)};
    qToBigEndian(value, bytes + 1);
    m_out->append(bytes, sizeof bytes);
}

void Encoder::putInteger(qint64 value)
{
    // A negative number n is told by -1 - n, which is what all its bits turned round are.
    writeHead(m_out, value < 0 ? Negative : Unsigned, quint64(value < 0 ? ~value : value));
}

Decoder::Decoder(const QByteArray& bytes)
    : m_at(reinterpret_cast<const uchar*>(bytes.constData()))
    , m_end(m_at + bytes.size())
{
    m_left.append(1);
}

std::optional<quint64> Decoder::takeHead(int majorType)
{
    Head head;
    if (!m_failed && m_left.last() > 0 && readHead(&m_at, m_end, &head) && head.majorType == majorType) {
        --m_left.last();
        return head.argument;
    }
    fail();
    return std::nullopt;
}

qint64 Decoder::enter()
{
    const std::optional<quint64> count = takeHead(Array);
    if (!count)
        return -1;
    m_left.append(*count);
    return qint64(*count);
}

void Decoder::leave()
{
    if (m_failed || m_left.last() > 0)
        return fail();
    m_left.removeLast();
}

qint64 Decoder::takeInteger(qint64 lowest, qint64 highest)
{
    const bool isNegative = m_at != m_end && *m_at >> 5 == Negative;
    if (const std::optional<quint64> argument = takeHead(isNegative ? Negative : Unsigned)) {
        const qint64 value = isNegative ? ~qint64(*argument) : qint64(*argument);
        if (value >= lowest && value <= highest)
            return value;
        fail();
    }
    return lowest;
}

bool Decoder::takeBool()
{
    const bool isBool = m_at != m_end && (*m_at | 1) == (Simple << 5 | trueInfo);
    if (!isBool)
        fail();
    return takeHead(Simple) == quint64(trueInfo);
}

double Decoder::takeDouble()
{
    const bool isDouble = m_at != m_end && *m_at == (Simple << 5 | longestInfo);
    if (!isDouble)
        fail();
    const std::optional<quint64> bits = takeHead(Simple);
    double value = 0;
    if (bits)
        std::memcpy(&value, &*bits, sizeof value);
    return value;
}

const char* Decoder::takeBytes(int majorType, int* size)
{
    const std::optional<quint64> length = takeHead(majorType);
    if (!length || *length > quint64(m_end - m_at)) {
        fail();
        return nullptr;
    }
    const auto* bytes = reinterpret_cast<const char*>(m_at);
    *size = int(*length);
    m_at += *length;
    return bytes;
}

void Decoder::get(QString& value)
{
    int size = 0;
    const char* bytes = takeBytes(Text, &size);
    if (bytes && !readUtf8(bytes, size, &value))
        fail();
}

void Decoder::get(QByteArray& value)
{
    int size = 0;
    if (const char* bytes = takeBytes(Bytes, &size))
        value = QByteArray(bytes, size);
}

void Decoder::get(QStringList& values)
{
    const qint64 count = enter();
    values.clear();
    for (qint64 i = 0; i < count && !m_failed; ++i) {
        QString value;
        get(value);
        values.append(value);
    }
    leave();
}

} // namespace Torvix::Protocol
