#include "report/jsonline.h"

#include <QJsonDocument>

namespace Torvix {

namespace {

constexpr int ordinaryLength = 512;

/** Right-aligned, filled up with zeros. */
void putNumber(char* at, int digits, int number)
{
    for (char* place = at + digits; place-- > at; number /= 10)
        *place = char('0' + number % 10);
}

/** ISO 8601 in UTC with milliseconds, as Qt::ISODateWithMs is, for the years of four digits. */
QByteArray timeText(const QDateTime& time)
{
    const QDateTime utc = time.toUTC();
    const QTime clock = utc.time();
    int year = 0, month = 0, day = 0;
    utc.date().getDate(&year, &month, &day);
    QByteArray text("0000-00-00T00:00:00.000Z");
    const struct
    {
        int at, digits, number;
    } parts[] = {{0, 4, year},          {5, 2, month},           {8, 2, day},
                 {11, 2, clock.hour()}, {14, 2, clock.minute()}, {17, 2, clock.second()},
                 {20, 3, clock.msec()}};
    for (const auto& part : parts)
        putNumber(text.data() + part.at, part.digits, part.number);
    return text;
}

bool isPlain(char byte)
{
    return uchar(byte) >= 0x20 && byte != '"' && byte != '\\';
}

} // namespace

JsonLine::JsonLine(const char* event, const QDateTime& time)
{
    m_bytes.reserve(ordinaryLength);
    m_bytes += "{\"event\":\"";
    m_bytes += event;
    m_bytes += "\",\"time\":\"";
    m_bytes += timeText(time.isValid() ? time : QDateTime::currentDateTimeUtc());
    m_bytes += '"';
}

void JsonLine::begin(const char* name)
{
    m_bytes += ",\"";
    m_bytes += name;
    m_bytes += "\":";
}

void JsonLine::appendText(const QString& text)
{
    static const char digits[] = "0123456789abcdef";
    const QByteArray utf8 = text.toUtf8();
    const char* const end = utf8.constData() + utf8.size();
    m_bytes += '"';
    for (const char* at = utf8.constData(); at < end;) {
        const char* stop = at;
        while (stop < end && isPlain(*stop))
            ++stop;
        m_bytes.append(at, int(stop - at));
        if (stop == end)
            break;
        const char byte = *stop;
        m_bytes += '\\';
        if (byte == '"' || byte == '\\')
            m_bytes += byte;
        else if (byte == '\n')
            m_bytes += 'n';
        else
            (m_bytes += "u00").append(digits[byte >> 4]).append(digits[byte & 15]);
        at = stop + 1;
    }
    m_bytes += '"';
}

JsonLine& JsonLine::add(const char* name, const QString& value)
{
    begin(name);
    appendText(value);
    return *this;
}

JsonLine& JsonLine::add(const char* name, const QStringList& values)
{
    begin(name);
    char separator = '[';
    for (const QString& value : values) {
        m_bytes += separator;
        appendText(value);
        separator = ',';
    }
    m_bytes += values.isEmpty() ? "[]" : "]";
    return *this;
}

JsonLine& JsonLine::add(const char* name, qint64 value)
{
    begin(name);
    m_bytes += QByteArray::number(value);
    return *this;
}

JsonLine& JsonLine::add(const char* name, bool value)
{
    begin(name);
    m_bytes += value ? "true" : "false";
    return *this;
}

JsonLine& JsonLine::add(const char* name, const QJsonObject& value)
{
    begin(name);
    m_bytes += QJsonDocument(value).toJson(QJsonDocument::Compact);
    return *this;
}

JsonLine& JsonLine::add(const char* name, const QJsonArray& value)
{
    begin(name);
    m_bytes += QJsonDocument(value).toJson(QJsonDocument::Compact);
    return *this;
}

QByteArray JsonLine::end()
{
    m_bytes += "}\n";
    return m_bytes;
}

} // namespace Torvix
