#include "shared/websocket/websocketclientimpl.h"

#include "shared/websocket/loginterface.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <typeinfo>
#include <utility>
#include <vector>

namespace Torvix {

namespace {

constexpr unsigned int PauseMicroseconds = 10000;
/** A client has one connection and the library's own wake-up pipe; the rest is reserve. */
constexpr unsigned int DescriptorsPerContext = 16;

class ElapsedTimer
{
public:
    bool hasExpired(int milliseconds) const
    {
        return std::chrono::steady_clock::now() - m_start > std::chrono::milliseconds(milliseconds);
    }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

/**
 * Creating a context makes the library ignore SIGPIPE for the whole process, and every program that
 * a script starts would inherit that. The library's writes do not raise the signal anyway.
 */
class SigPipeKeeper
{
public:
    SigPipeKeeper() { sigaction(SIGPIPE, nullptr, &m_action); }
    ~SigPipeKeeper() { sigaction(SIGPIPE, &m_action, nullptr); }
    SigPipeKeeper(const SigPipeKeeper&) = delete;
    SigPipeKeeper& operator=(const SigPipeKeeper&) = delete;

private:
    struct sigaction m_action = {};
};

/**
 * The reason under which this client knows a callback. Libraries from 2.4 on report the end of a
 * client's connection by a reason of its own instead of the one that servers get.
 */
lws_callback_reasons commonReason(lws_callback_reasons reason)
{
    return reason == LWS_CALLBACK_CLIENT_CLOSED ? LWS_CALLBACK_CLOSED : reason;
}

/** Handshake headers, and what the library tells of protocols, connections and its poll set. */
bool isHousekeeping(lws_callback_reasons reason)
{
    return reason == LWS_CALLBACK_CLIENT_APPEND_HANDSHAKE_HEADER ||
           (reason >= LWS_CALLBACK_PROTOCOL_INIT && reason <= LWS_CALLBACK_UNLOCK_POLL);
}

/** The callbacks that a blocking call may wait for. */
bool isAwaitable(lws_callback_reasons reason)
{
    switch (reason) {
    case LWS_CALLBACK_CLIENT_CONNECTION_ERROR:
    case LWS_CALLBACK_CLIENT_ESTABLISHED:
    case LWS_CALLBACK_CLOSED:
    case LWS_CALLBACK_CLIENT_RECEIVE:
    case LWS_CALLBACK_CLIENT_WRITEABLE:
        return true;
    default:
        return false;
    }
}

/** What the log says of a callback that changes the state of the connection. */
const char* describe(lws_callback_reasons reason)
{
    switch (reason) {
    case LWS_CALLBACK_CLIENT_CONNECTION_ERROR:
        return "connection error";
    case LWS_CALLBACK_CLIENT_ESTABLISHED:
        return "connection established";
    default:
        return "closed";
    }
}

/** Null for a log that nobody reads, so that a silent client formats nothing. */
LogInterface* audible(LogInterface* log)
{
    return log && typeid(*log) != typeid(NullLog) ? log : nullptr;
}

/** The Host header of RFC 7230: an IPv6 literal stands in brackets. */
std::string hostHeader(const std::string& host, unsigned short port)
{
    const bool isLiteral6 = host.find(':') != std::string::npos && host.front() != '[';
    return (isLiteral6 ? '[' + host + ']' : host) + ':' + std::to_string(port);
}

} // namespace

_CallbackEvent::_CallbackEvent(lws_callback_reasons eventReason, unsigned long byteCount, const void* bytes)
    : reason(eventReason)
    , length(bytes ? byteCount : 0)
{
    if (length > 0) {
        data.reset(new char[length]);
        std::memcpy(data.get(), bytes, length);
    }
}

LogInterface* WebSocketClientImpl::staticLog = nullptr;
std::map<lws*, WebSocketClientImpl*> WebSocketClientImpl::sockets;
const lws_protocols WebSocketClientImpl::protocols[] = {
    {"default", &WebSocketClientImpl::libwebsocket_callback, 304, MaxFragmentSize, 0, nullptr, 0},
    {nullptr, nullptr, 0, 0, 0, nullptr, 0}};

std::unique_ptr<WebSocketClient> createWebSocketClient(LogInterface* log, const std::string& host,
                                                       unsigned short port)
{
    WebSocketClientImpl::staticLog = log;
    return std::make_unique<WebSocketClientImpl>(log, host, port);
}

WebSocketClientImpl::WebSocketClientImpl(LogInterface* log, std::string host, unsigned short port)
    : WebSocketClient(log, std::move(host), port)
{
    try {
        createContext();
        startConnecting();
        awaitEstablished();
    } catch (...) {
        forgetConnection();
        releaseContext();
        if (staticLog == m_log)
            staticLog = nullptr;
        throw;
    }
}

WebSocketClientImpl::~WebSocketClientImpl()
{
    if (m_context && m_wsi)
        close();
    forgetConnection();
    releaseContext();
    if (staticLog == m_log)
        staticLog = nullptr;
}

void WebSocketClientImpl::createContext()
{
    lws_set_log_level(0, nullptr); // the library itself would write to standard error
    lws_context_creation_info info = {};
    info.port = CONTEXT_PORT_NO_LISTEN;
    info.gid = static_cast<gid_t>(-1);
    info.uid = static_cast<uid_t>(-1);
    info.protocols = protocols;
    info.user = this;
    info.http_proxy_address = "";            // else "http_proxy" of the environment would redirect us
    info.pt_serv_buf_size = MaxFragmentSize; // one read of the default 4096 costs a whole pass
    info.fd_limit_per_thread = DescriptorsPerContext; // else tables for all that the process may open
    const SigPipeKeeper sigPipe;
    m_context.reset(lws_create_context(&info));
    if (!m_context) {
        if (m_log)
            m_log->log(1, "createWebSocketClient: Error creating context for host/port: %s:%d\n",
                       m_host.c_str(), m_port);
        throw std::runtime_error("cannot create libwebsockets context");
    }
}

void WebSocketClientImpl::startConnecting()
{
    const std::string header = hostHeader(m_host, m_port);
    lws_client_connect_info info = {};
    info.context = m_context.get();
    info.address = m_host.c_str();
    info.port = m_port;
    info.ssl_connection = 0;
    info.path = "/";
    info.host = header.c_str();
    lws* wsi = lws_client_connect_via_info(&info);
    if (!wsi) {
        if (m_log)
            m_log->log(1, "createWebSocketClient: Error connecting to host/port: %s:%d\n", m_host.c_str(),
                       m_port);
        throw std::runtime_error("libwebsocket_client_connect failed");
    }
    m_wsi = wsi;
    sockets[m_wsi] = this;
}

void WebSocketClientImpl::awaitEstablished()
{
    EventPointer event;
    if (!blockUntil({LWS_CALLBACK_CLIENT_ESTABLISHED, LWS_CALLBACK_CLIENT_CONNECTION_ERROR}, event))
        throw std::runtime_error("establishing a WebSocket connection timed out");
    LogInterface* log = audibleLog();
    switch (event->reason) {
    case LWS_CALLBACK_CLIENT_CONNECTION_ERROR:
        throwConnectionFailed();
    case LWS_CALLBACK_CLIENT_ESTABLISHED:
        if (log)
            log->log(0, "WebSocketClientImpl(): CLIENT_ESTABLISHED to host/port: %s:%i\n", m_host.c_str(),
                     m_port);
        break;
    default:
        if (log)
            log->log(0, "WebSocketClientImpl(): unhandled in switch: %i\n", event->reason);
    }
}

void WebSocketClientImpl::throwConnectionFailed() const
{
    const std::string message = "connection to " + m_host + ":" + std::to_string(m_port) + " failed";
    if (m_log)
        m_log->log(1, "WebSocketClientImpl(): %s\n", message.c_str());
    throw std::runtime_error(message);
}

void WebSocketClientImpl::forgetConnection()
{
    if (m_wsi)
        sockets.erase(m_wsi);
    m_wsi = nullptr;
}

void WebSocketClientImpl::releaseContext()
{
    if (m_context)
        m_context.reset();
}

LogInterface* WebSocketClientImpl::audibleLog() const
{
    return audible(m_log);
}

int WebSocketClientImpl::libwebsocket_callback(lws* wsi, lws_callback_reasons libraryReason, void*, void* in,
                                               size_t len)
{
    const lws_callback_reasons reason = commonReason(libraryReason);
    const auto found = wsi ? sockets.find(wsi) : sockets.end();
    if (found == sockets.end() || !found->second) {
        if (LogInterface* log = audible(staticLog))
            log->log(0, "callback: no socket found\n");
        return 0;
    }
    WebSocketClientImpl* client = found->second;
    if (isHousekeeping(reason)) {
        if (reason == LWS_CALLBACK_WSI_DESTROY)
            client->forgetConnection();
        return 0; // a refusal here would keep the library from watching the socket at all
    }
    client->handleCallback(wsi, reason, in, len);
    return client->m_closed ? -1 : 0;
}

void WebSocketClientImpl::handleCallback(lws* wsi, lws_callback_reasons reason, const void* in, size_t len)
{
    LogInterface* log = audibleLog();
    if (!isAwaitable(reason)) {
        if (log && reason != LWS_CALLBACK_CLIENT_FILTER_PRE_ESTABLISH)
            log->log(0, "callback: unhandled: %i\n", reason);
        return;
    }
    auto event = std::make_unique<_CallbackEvent>(reason, len, in);
    // A callback that is about to be refused ends the connection; let the peer know that all is well.
    if (m_closed && (reason == LWS_CALLBACK_CLIENT_RECEIVE || reason == LWS_CALLBACK_CLIENT_WRITEABLE))
        lws_close_reason(wsi, LWS_CLOSE_STATUS_NORMAL, nullptr, 0);
    if (reason == LWS_CALLBACK_CLIENT_RECEIVE) {
        if (log)
            log->log(0, "callback: client receive, buffering data\n");
        bufferData(*event, lws_remaining_packet_payload(wsi) == 0 && lws_is_final_fragment(wsi));
    } else if (reason == LWS_CALLBACK_CLIENT_WRITEABLE) {
        const bool sent = sendDataChunk();
        if (log)
            log->log(0, "callback: writable, sendDataChunk = %i\n", sent);
    } else if (log) {
        log->log(0, "callback: %s\n", describe(reason));
    }
    m_eventQueue.push_back(std::move(event));
}

void WebSocketClientImpl::bufferData(const _CallbackEvent& event, bool final)
{
    if (event.length > 0)
        m_partialMessage.append(event.data.get(), event.length);
    if (!final)
        return;
    m_receivedMessages.push_back(std::move(m_partialMessage));
    m_partialMessage.clear();
}

bool WebSocketClientImpl::sendDataChunk()
{
    if (m_closed)
        return false;
    LogInterface* log = audibleLog();
    if (m_sendQueue.empty()) {
        if (log)
            log->log(1, "WebSocketClientImpl::sendDataChunk: called but no message waiting to be sent\n");
        return true;
    }
    TextMessage& message = m_sendQueue.front();
    const std::size_t remaining = message.data.size() - message.sent;
    const std::size_t chunk = std::min(remaining, MaxSendChunkSize);
    std::vector<unsigned char> buffer(LWS_PRE + chunk); // the library writes the header ahead of the text
    std::memcpy(buffer.data() + LWS_PRE, message.data.data() + message.sent, chunk);
    int mode = message.sent == 0 ? LWS_WRITE_TEXT : LWS_WRITE_CONTINUATION;
    if (chunk < remaining)
        mode |= LWS_WRITE_NO_FIN;
    if (lws_write(m_wsi, buffer.data() + LWS_PRE, chunk, static_cast<lws_write_protocol>(mode)) < 0) {
        if (log)
            log->log(1,
                     "sendDataChunk: Could not send all data over the socket, something is seriously wrong "
                     "with the network. Subsequent sending will probably fail on this socket.\n");
        return false;
    }
    if (chunk < remaining)
        message.sent += chunk;
    else
        m_sendQueue.pop_front();
    return true;
}

void WebSocketClientImpl::poll(int timeoutMs)
{
    // Libraries from 3.2 on ignore the time-out and sleep until something happens; so it does.
    lws_sul_schedule(m_context.get(), 0, &m_wakeUp, &WebSocketClientImpl::ignoreWakeUp,
                     timeoutMs * static_cast<lws_usec_t>(LWS_US_PER_MS));
    if (lws_service(m_context.get(), timeoutMs) < 0) {
        if (LogInterface* log = audibleLog())
            log->log(0, "WebSocketClient:poll: libwebsocket_service != 0\n");
    }
    lws_sul_cancel(&m_wakeUp);
}

WebSocketClientImpl::EventPointer WebSocketClientImpl::takeExpected(const Reasons& expected)
{
    LogInterface* log = audibleLog();
    while (!m_eventQueue.empty()) {
        if (log)
            log->log(0, "blockUntil: items in queue: %i\n", static_cast<int>(m_eventQueue.size()));
        EventPointer event = std::move(m_eventQueue.front());
        m_eventQueue.pop_front();
        if (expected.count(event->reason)) {
            if (log)
                log->log(0, "blockUntil: found expected: %i, left in queue: %i\n", event->reason,
                         static_cast<int>(m_eventQueue.size()));
            return event;
        }
        switch (event->reason) {
        case LWS_CALLBACK_CLIENT_RECEIVE:
        case LWS_CALLBACK_CLIENT_WRITEABLE:
            break; // done with in the callback
        case LWS_CALLBACK_CLOSED:
            if (log)
                log->log(0, "blockUntil: closed\n");
            m_closed = true;
            throw std::runtime_error("socket is closed");
        default:
            if (log)
                log->log(0, "blockUntil: unhandled in eventQueue: %i\n", event->reason);
        }
    }
    return nullptr;
}

bool WebSocketClientImpl::blockUntil(const Reasons& expected, EventPointer& event, int timeout)
{
    const int limit = timeout == -1 ? m_timeout : timeout;
    const ElapsedTimer timer;
    for (;;) {
        poll(1);
        EventPointer found = takeExpected(expected);
        // Looked at ahead of the find: what comes after the deadline counts as not come.
        const bool late = timer.hasExpired(limit);
        if (late) {
            if (LogInterface* log = audibleLog())
                log->log(0, "blockUntil: timedOut\n");
        }
        usleep(PauseMicroseconds);
        if (late)
            return false;
        if (found || expected.empty()) {
            event = std::move(found);
            return true;
        }
    }
}

void WebSocketClientImpl::requestWritable()
{
    if (m_wsi)
        lws_callback_on_writable(m_wsi);
}

void WebSocketClientImpl::flushBuffered()
{
    // The library keeps what the kernel did not take and writes it when it is serviced, which after
    // this call may be never.
    const ElapsedTimer timer;
    while (m_wsi && lws_partial_buffered(m_wsi)) {
        if (timer.hasExpired(m_timeout))
            throw std::runtime_error("socket didn't become writable within timeout");
        poll(1);
    }
}

bool WebSocketClientImpl::queueTextMessage(const std::string& text)
{
    if (m_closed)
        throw std::runtime_error("socket is closed");
    m_sendQueue.push_back({text, 0});
    LogInterface* log = audibleLog();
    while (!m_sendQueue.empty() && !m_closed) {
        requestWritable();
        EventPointer event;
        if (!blockUntil({LWS_CALLBACK_CLIENT_WRITEABLE}, event)) {
            if (log)
                log->log(0, "queueTextMessage: socket didn't become writable within timeout");
            throw std::runtime_error("socket didn't become writable within timeout");
        }
        if (log) {
            if (event->reason == LWS_CALLBACK_CLIENT_WRITEABLE)
                log->log(0, "queueTextMessage: written\n");
            else
                log->log(0, "queueTextMessage: unexpected event: %i\n", event->reason);
        }
    }
    flushBuffered();
    return !m_closed;
}

void WebSocketClientImpl::setListener(WebSocketListener*) {}

bool WebSocketClientImpl::receiveTextMessage(std::string* text)
{
    if (m_closed)
        throw std::runtime_error("socket is closed");
    LogInterface* log = audibleLog();
    while (m_receivedMessages.empty()) {
        EventPointer event;
        if (!blockUntil({LWS_CALLBACK_CLIENT_RECEIVE}, event)) {
            if (log)
                log->log(0, "receiveMessage: didn't receive a RECEIVE callback\n");
            return false;
        }
        if (log && event->reason != LWS_CALLBACK_CLIENT_RECEIVE)
            log->log(0, "receiveMessage: unexpected event: %i\n", event->reason);
    }
    *text = std::move(m_receivedMessages.front());
    m_receivedMessages.pop_front();
    return !m_closed;
}

void WebSocketClientImpl::close()
{
    m_closed = true;
    if (!m_context)
        return;
    LogInterface* log = audibleLog();
    if (m_wsi) {
        requestWritable();
        EventPointer event;
        if (!blockUntil({LWS_CALLBACK_CLOSED}, event)) {
            if (log)
                log->log(0, "WebSocketClient: close() failed\n");
            return;
        }
        if (log) {
            if (event->reason == LWS_CALLBACK_CLOSED)
                log->log(0, "WebSocketClient::close: connection closed\n");
            else
                log->log(0, "WebSocketClient::close: unexpected event: %i\n", event->reason);
        }
    }
    forgetConnection();
    // Asked of all clients, as intended; this client's own context otherwise goes with the client.
    if (sockets.empty()) {
        if (log)
            log->log(0, "WebSocketClient: destroying m_context\n");
        releaseContext();
    }
}

} // namespace Torvix
