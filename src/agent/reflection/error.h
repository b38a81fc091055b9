#pragma once

#include "protocol/message.h"

#include <QString>

#include <exception>

namespace Torvix::Agent {

/**
 * The agent's error idiom: what cannot be done throws an Error with a text for the script's author.
 *
 * It is thrown only while a request is worked on and caught where the request is dispatched, so that
 * it never passes through the application's event loop.
 */
class Error : public std::exception
{
public:
    explicit Error(const QString& message, Protocol::ErrorClass kind = Protocol::ErrorClass::Failed)
        : m_message(message)
        , m_utf8(message.toUtf8())
        , m_kind(kind)
    {
    }
    const QString& message() const { return m_message; }
    Protocol::ErrorClass kind() const { return m_kind; }
    const char* what() const noexcept override { return m_utf8.constData(); }

private:
    QString m_message;
    QByteArray m_utf8;
    Protocol::ErrorClass m_kind;
};

} // namespace Torvix::Agent
