#include "protocol/codec.h"

#include <QtEndian>

namespace Torvix::Protocol {

namespace {

constexpr int maxDepth = 64;

enum MajorType { Unsigned = 0, Negative = 1, Bytes = 2, Text = 3, Array = 4, Simple = 7 };

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
        if (m_at == m_end || depth > maxDepth)
            return false;
        const int major = *m_at >> 5;
        const int info = *m_at & 31;
        ++m_at;
        quint64 argument = 0;
        if (!readArgument(info, &argument))
            return false;
        switch (major) {
        case Unsigned:
        case Negative:
            return argument <= quint64(std::numeric_limits<qint64>::max());
        case Bytes:
        case Text:
            if (argument > left())
                return false;
            m_at += argument;
            return true;
        case Array:
            return skipArray(argument, depth);
        case Simple:
            return isKnownSimple(info);
        default:
            return false;
        }
    }

private:
    quint64 left() const { return quint64(m_end - m_at); }

    bool readArgument(int info, quint64* argument)
    {
        if (info < 24) {
            *argument = quint64(info);
            return true;
        }
        if (info > 27)
            return false;
        const int size = 1 << (info - 24);
        if (left() < quint64(size))
            return false;
        for (int i = 0; i < size; ++i)
            *argument = *argument << 8 | *m_at++;
        return true;
    }

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

    static bool isKnownSimple(int info)
    {
        constexpr int falseValue = 20, trueValue = 21, doubleFloat = 27;
        return info == falseValue || info == trueValue || info == doubleFloat;
    }

    const uchar* m_at;
    const uchar* m_end;
};

} // namespace

bool isWellFormed(const QByteArray& body)
{
    Scanner scanner(body);
    return scanner.skipItem(0) && scanner.atEnd();
}

qint64 Decoder::enter()
{
    if (!m_failed && m_reader.isArray() && m_reader.isLengthKnown()) {
        const auto length = qint64(m_reader.length());
        if (m_reader.enterContainer())
            return length;
    }
    fail();
    return -1;
}

void Decoder::leave()
{
    if (!m_failed && !m_reader.leaveContainer())
        fail();
}

qint64 Decoder::takeInteger(qint64 lowest, qint64 highest)
{
    if (!m_failed && m_reader.isInteger()) {
        const qint64 value = m_reader.toInteger();
        m_reader.next();
        if (value >= lowest && value <= highest)
            return value;
    }
    fail();
    return lowest;
}

bool Decoder::takeBool()
{
    if (!m_failed && m_reader.isBool()) {
        const bool value = m_reader.toBool();
        m_reader.next();
        return value;
    }
    fail();
    return false;
}

double Decoder::takeDouble()
{
    if (!m_failed && m_reader.isDouble()) {
        const double value = m_reader.toDouble();
        m_reader.next();
        return value;
    }
    fail();
    return 0;
}

void Decoder::get(QString& value)
{
    if (m_failed || !m_reader.isString())
        return fail();
    auto chunk = m_reader.readString();
    value = chunk.data;
    while (chunk.status == QCborStreamReader::Ok)
        chunk = m_reader.readString();
    if (chunk.status != QCborStreamReader::EndOfString)
        fail();
}

void Decoder::get(QByteArray& value)
{
    if (m_failed || !m_reader.isByteArray())
        return fail();
    auto chunk = m_reader.readByteArray();
    value = chunk.data;
    while (chunk.status == QCborStreamReader::Ok)
        chunk = m_reader.readByteArray();
    if (chunk.status != QCborStreamReader::EndOfString)
        fail();
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
