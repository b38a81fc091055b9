#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

namespace Torvix {

/**
 * An event of the result stream as its line of JSON (RFC 8259, UTF-8), built field by field:
 *
 *     JsonLine("case-ended").add("outcome", name).add("durationMs", 12).end();
 *
 * Each check of a script writes one, so it goes straight into its bytes. Names of fields are ASCII
 * without anything to escape, and given once each.
 */
class JsonLine
{
public:
    /** Begins with the fields "event" and "time"; an invalid time is that of now. */
    explicit JsonLine(const char* event, const QDateTime& time = QDateTime());

    JsonLine& add(const char* name, const QString& value);
    JsonLine& add(const char* name, const QStringList& values);
    JsonLine& add(const char* name, int value) { return add(name, qint64(value)); }
    JsonLine& add(const char* name, qint64 value);
    JsonLine& add(const char* name, bool value);
    JsonLine& add(const char* name, const QJsonObject& value);
    JsonLine& add(const char* name, const QJsonArray& value);
    /** A text literal would otherwise become a boolean. */
    JsonLine& add(const char* name, const char* value) = delete;

    /** The whole line with its newline; nothing is added afterwards. */
    QByteArray end();

private:
    void begin(const char* name);
    void appendText(const QString& text);

    QByteArray m_bytes;
};

} // namespace Torvix
