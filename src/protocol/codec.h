#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVarLengthArray>
#include <QVector>

#include <limits>
#include <optional>
#include <type_traits>

/**
 * Structures to CBOR (RFC 8949) and back.
 *
 * A structure names its fields once, in the order of the wire, and both directions follow it:
 *
 *     struct Highlight {
 *         qint64 object = 0;
 *         int durationMs = 0;
 *         TORVIX_WIRE_FIELDS(object, durationMs)
 *     };
 *     QByteArray body = encode(highlight);
 *     bool good = decode(body, &highlight);
 *
 * A structure is an array with one item for each field; a list is an array; a QMap is an array of
 * [key, value] arrays; integers, booleans, doubles, texts and byte strings are themselves; an
 * enumeration is its number. All lengths are definite. Anything else is refused by decode().
 *
 * Each call of a script is encoded and decoded four times, so both directions work on plain memory.
 */
#define TORVIX_WIRE_FIELDS(...)                                                                              \
    template <class Archive>                                                                                 \
    void fields(Archive& archive)                                                                            \
    {                                                                                                        \
        archive(__VA_ARGS__);                                                                                \
    }                                                                                                        \
    template <class Archive>                                                                                 \
    void fields(Archive& archive) const                                                                      \
    {                                                                                                        \
        archive(__VA_ARGS__);                                                                                \
    }

namespace Torvix::Protocol {

/** A structure without fields: an empty array. */
struct Empty
{
    template <class Archive>
    void fields(Archive& archive) const
    {
        archive();
    }
};

/**
 * True when `body` is exactly one CBOR item of definite lengths that all lie inside it, nested at
 * most 64 deep, of no other types than this codec writes. Takes no memory, whatever is claimed.
 */
bool isWellFormed(const QByteArray& body);

class Encoder
{
public:
    explicit Encoder(QByteArray* out) : m_out(out) {}

    template <class... Fields>
    void operator()(const Fields&... values)
    {
        putArrayHead(sizeof...(values));
        (put(values), ...);
    }

    template <class T>
    void put(const T& value)
    {
        if constexpr (std::is_same_v<T, bool>)
            putBool(value);
        else if constexpr (std::is_same_v<T, double>)
            putDouble(value);
        else if constexpr (std::is_enum_v<T> || std::is_integral_v<T>)
            putInteger(qint64(value));
        else
            value.fields(*this);
    }
    void put(const QString& value);
    void put(const QByteArray& value);
    void put(const QStringList& values) { putList(values); }
    template <class T>
    void put(const QVector<T>& values)
    {
        putList(values);
    }
    template <class T>
    void put(const QMap<QString, T>& values)
    {
        putArrayHead(quint64(values.size()));
        for (auto it = values.begin(); it != values.end(); ++it)
            (*this)(it.key(), it.value());
    }

private:
    template <class List>
    void putList(const List& values)
    {
        putArrayHead(quint64(values.size()));
        for (const auto& value : values)
            put(value);
    }
    void putArrayHead(quint64 count);
    void putBool(bool value);
    void putDouble(double value);
    void putInteger(qint64 value);

    QByteArray* m_out;
};

/** Every operation after the first failure does nothing; failed() tells at the end. */
class Decoder
{
public:
    /** The bytes must be well formed (see isWellFormed), and outlive this. */
    explicit Decoder(const QByteArray& bytes);

    bool failed() const { return m_failed; }

    template <class... Fields>
    void operator()(Fields&... values)
    {
        if (enter() != qint64(sizeof...(values)))
            fail();
        (get(values), ...);
        leave();
    }

    template <class T>
    void get(T& value)
    {
        if constexpr (std::is_same_v<T, bool>)
            value = takeBool();
        else if constexpr (std::is_same_v<T, double>)
            value = takeDouble();
        else if constexpr (std::is_enum_v<T>)
            value = T(takeInteger(0, qint64(T::Last)));
        else if constexpr (std::is_same_v<T, quint32>)
            value = T(takeInteger(0, std::numeric_limits<quint32>::max()));
        else if constexpr (std::is_integral_v<T>)
            value = T(takeInteger(std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
        else if (!m_failed)
            value.fields(*this);
    }
    void get(QString& value);
    void get(QByteArray& value);
    void get(QStringList& values);
    template <class T>
    void get(QVector<T>& values)
    {
        const qint64 count = enter();
        values.clear();
        for (qint64 i = 0; i < count && !m_failed; ++i) {
            values.append(T());
            get(values.last());
        }
        leave();
    }
    template <class T>
    void get(QMap<QString, T>& values)
    {
        const qint64 count = enter();
        values.clear();
        for (qint64 i = 0; i < count && !m_failed; ++i) {
            QString key;
            T value{};
            (*this)(key, value);
            values.insert(key, value);
        }
        leave();
    }

    /** For structures whose shape depends on a field, such as Value. */
    void fail() { m_failed = true; }
    /** Enters an array and gives its length, -1 after a failure. */
    qint64 enter();
    void leave();
    qint64 takeInteger(qint64 lowest, qint64 highest);
    bool takeBool();
    double takeDouble();

private:
    /** Passes over the head of the next item; nothing, after a failure, unless it is of that type. */
    std::optional<quint64> takeHead(int majorType);
    /** The bytes of a byte string or a text. */
    const char* takeBytes(int majorType, int* size);

    const uchar* m_at;
    const uchar* m_end;
    QVarLengthArray<quint64, 8> m_left; ///< items that are still to come, in each entered array
    bool m_failed = false;
};

template <class T>
QByteArray encode(const T& message)
{
    QByteArray body;
    Encoder encoder(&body);
    encoder.put(message);
    return body;
}

/** False, with `*message` in an unspecified but valid state, when the body is not such a message. */
template <class T>
bool decode(const QByteArray& body, T* message)
{
    if (!isWellFormed(body))
        return false;
    Decoder decoder(body);
    decoder.get(*message);
    return !decoder.failed();
}

} // namespace Torvix::Protocol
