#pragma once

#include <QStringList>
#include <QtGlobal>

/** Collects what goes to Qt's message log while it lives. One at a time. */
class MessageCapture
{
public:
    MessageCapture()
    {
        s_messages.clear();
        m_former = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& text) { s_messages.append(text); });
    }
    ~MessageCapture() { qInstallMessageHandler(m_former); }
    MessageCapture(const MessageCapture&) = delete;
    MessageCapture& operator=(const MessageCapture&) = delete;

    /** The messages since the last take(), or since the beginning. */
    QStringList take()
    {
        const QStringList messages = s_messages;
        s_messages.clear();
        return messages;
    }

private:
    static inline QStringList s_messages;
    QtMessageHandler m_former = nullptr;
};
