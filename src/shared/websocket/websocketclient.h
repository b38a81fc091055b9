#pragma once

#include <memory>
#include <string>
#include <utility>

namespace Torvix {

class LogInterface;
class WebSocketListener;

/**
 * A WebSocket (RFC 6455) for text messages, used by blocking calls from one thread.
 *
 * Texts are UTF-8 in both directions and are passed on as they are. Failures are
 * std::runtime_error; their texts are part of the interface.
 */
class WebSocket
{
public:
    virtual ~WebSocket() = default;

    /**
     * Sends a close frame with the status 1000 and ends the connection. Does nothing on a socket that
     * has ended already. Never throws; a peer to which the frame does not get through within the
     * timeout is given up on.
     */
    virtual void close() = 0;

    /**
     * Sends one text message and returns when it is written: true while the socket is still open.
     * Messages of more than 32,768 bytes go out as fragments of that size, and the timeout runs for
     * each of these. Throws "socket is closed" or "socket didn't become writable within timeout";
     * after the latter the rest of the message goes out ahead of the next one.
     */
    virtual bool queueTextMessage(const std::string& text) = 0;

    /** For event-driven sockets. A blocking client has no use for a listener. */
    virtual void setListener(WebSocketListener* listener) = 0;

    /**
     * Waits for one whole message and moves it into `text`. False, with `text` untouched, when
     * nothing arrived within the timeout; each fragment starts the timeout anew. Throws
     * "socket is closed" when the peer has closed.
     */
    virtual bool receiveTextMessage(std::string* text) = 0;
};

/** The state that a client shows to its user; only `m_timeout` may be written from outside. */
class WebSocketClient : public WebSocket
{
public:
    void close() override = 0;
    bool queueTextMessage(const std::string& text) override = 0;
    void setListener(WebSocketListener* listener) override = 0;
    bool receiveTextMessage(std::string* text) override = 0;

    /** Set by close(), or when a blocking call has met the peer's close. */
    bool m_closed = false;
    std::string m_host;
    unsigned short m_port = 0;
    /** Milliseconds that each wait of a blocking call may take. */
    int m_timeout = 3000;
    /** Not owned, outlives the client; null is silent. */
    LogInterface* m_log = nullptr;

protected:
    WebSocketClient(LogInterface* log, std::string host, unsigned short port)
        : m_host(std::move(host))
        , m_port(port)
        , m_log(log)
    {
    }
};

/**
 * Connects to ws://host:port/ (no TLS) and returns when the connection is established.
 *
 * `host` is a name or an address literal. `log` may be null; else it must outlive the client. The
 * name is resolved on the calling thread, without a time limit. Throws std::runtime_error:
 * - "connection to host:port failed" for a refused connection, or a server that declines the
 *   handshake;
 * - "establishing a WebSocket connection timed out" after three seconds of silence;
 * - "libwebsocket_client_connect failed" for an unknown name, or an address that cannot be reached
 *   from here;
 * - "cannot create libwebsockets context" when the library could not begin at all.
 */
std::unique_ptr<WebSocketClient> createWebSocketClient(LogInterface* log, const std::string& host,
                                                       unsigned short port);

} // namespace Torvix
