#pragma once

#include "shared/websocket/websocketclient.h"

#include <libwebsockets.h>

#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace Torvix {

/** One callback of the library that a blocking call may wait for, with a copy of its bytes. */
struct _CallbackEvent
{
    _CallbackEvent(lws_callback_reasons eventReason, unsigned long byteCount, const void* bytes);

    lws_callback_reasons reason;
    /** Null when the length is 0. */
    std::unique_ptr<char[]> data;
    unsigned long length;
};

/**
 * The client on libwebsockets. The library's callbacks, which come only inside poll(), do the work
 * and leave an event; blockUntil() is the one place that waits for such an event.
 */
class WebSocketClientImpl : public WebSocketClient
{
public:
    static constexpr std::size_t MaxSendChunkSize = 32768;
    static constexpr std::size_t MaxFragmentSize = 65536;

    /** Connects; see createWebSocketClient(). */
    WebSocketClientImpl(LogInterface* log, std::string host, unsigned short port);
    ~WebSocketClientImpl() override;
    WebSocketClientImpl(const WebSocketClientImpl&) = delete;
    WebSocketClientImpl& operator=(const WebSocketClientImpl&) = delete;

    void close() override;
    bool queueTextMessage(const std::string& text) override;
    void setListener(WebSocketListener* listener) override;
    bool receiveTextMessage(std::string* text) override;

    /** Where callbacks without a client go: the log of the newest client. */
    static LogInterface* staticLog;

private:
    struct TextMessage
    {
        std::string data;
        std::size_t sent = 0;
    };
    struct ContextDeleter
    {
        void operator()(lws_context* context) const { lws_context_destroy(context); }
    };
    using EventPointer = std::unique_ptr<_CallbackEvent>;
    using Reasons = std::set<lws_callback_reasons>;

    static int libwebsocket_callback(lws* wsi, lws_callback_reasons reason, void* user, void* in, size_t len);
    static void ignoreWakeUp(lws_sorted_usec_list_t*) {}
    void handleCallback(lws* wsi, lws_callback_reasons reason, const void* in, size_t len);
    void bufferData(const _CallbackEvent& event, bool final);
    bool sendDataChunk();

    void createContext();
    void startConnecting();
    void awaitEstablished();
    [[noreturn]] void throwConnectionFailed() const;
    void forgetConnection();
    void releaseContext();

    void poll(int timeoutMs);
    bool blockUntil(const Reasons& expected, EventPointer& event, int timeout = -1);
    EventPointer takeExpected(const Reasons& expected);
    void requestWritable();
    void flushBuffered();
    LogInterface* audibleLog() const;

    static const lws_protocols protocols[];
    static std::map<lws*, WebSocketClientImpl*> sockets;

    /** The connection; null as soon as the library has freed it. */
    lws* m_wsi = nullptr;
    std::unique_ptr<lws_context, ContextDeleter> m_context;
    std::deque<EventPointer> m_eventQueue;
    std::deque<TextMessage> m_sendQueue;
    std::deque<std::string> m_receivedMessages;
    std::string m_partialMessage;
    lws_sorted_usec_list_t m_wakeUp = {};
};

} // namespace Torvix
