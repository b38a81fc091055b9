#pragma once

#include "objectmodel/session.h"

#include <QTemporaryDir>

#include <memory>

namespace Torvix {

/** A local socket in a folder of its own (mode 0700) that agents with its token connect to. */
class ListenSocket
{
public:
    /** Null on failure, told in `*error`. */
    static std::unique_ptr<ListenSocket> create(QString* error);
    ~ListenSocket();
    ListenSocket(const ListenSocket&) = delete;
    ListenSocket& operator=(const ListenSocket&) = delete;

    QString folder() const { return m_folder.path(); }
    QString path() const { return m_folder.filePath(QStringLiteral("agent")); }
    QByteArray token() const { return m_token; }

    /** Null when nobody came in time; `*refused` is set when somebody came who may not. */
    std::unique_ptr<Session> accept(int timeoutMs, QString* refused);

private:
    ListenSocket();

    QTemporaryDir m_folder;
    QByteArray m_token;
    int m_descriptor = -1;
};

} // namespace Torvix
