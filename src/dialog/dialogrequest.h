#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

/**
 * What a dialog shows and asks, as one line of JSON (RFC 8259, UTF-8):
 *
 *     {"kind": "choice", "text": "Which one?", "buttons": ["ok", "cancel"], "choices": ["a", "b"]}
 *
 * Only "kind" has to be there.
 */
struct DialogRequest
{
    enum class Kind {
        Information,
        Warning,
        Question,
        Input,       ///< a text, "value" at first
        Password,    ///< a text that is not shown
        Choice,      ///< one of "choices"
        Image,       ///< "file" is shown
        Notification ///< nobody is waited for
    };

    Kind kind = Kind::Information;
    QString text;
    QStringList buttons; ///< "ok", "cancel", "yes", "no"; only "ok" when there are none
    QString value;
    QStringList choices;
    QString file;

    /** Nothing, with the reason in `*error`, when it is no request. */
    static std::optional<DialogRequest> read(const QByteArray& json, QString* error);
};
