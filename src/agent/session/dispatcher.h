#pragma once

#include "agent/session/session.h"
#include "protocol/message.h"

#include <QHash>

#include <functional>
#include <memory>

namespace Torvix::Agent {

/**
 * The answer that a request waits for. Copies answer the same request; the first answer counts, so
 * that whoever gives up waiting may answer before the work is done.
 */
class Responder
{
public:
    using Sink = std::function<void(Protocol::ErrorClass error, const QByteArray& body)>;

    explicit Responder(Sink sink) : m_sink(std::make_shared<Sink>(std::move(sink))) {}

    bool isAnswered() const { return !*m_sink; }
    void reply(const QByteArray& body) { answer(Protocol::ErrorClass(0), body); }
    void fail(Protocol::ErrorClass error, const QString& text)
    {
        answer(error, Protocol::encode(Protocol::ErrorText{text}));
    }

private:
    void answer(Protocol::ErrorClass error, const QByteArray& body)
    {
        if (const Sink sink = std::exchange(*m_sink, nullptr))
            sink(error, body);
    }
    std::shared_ptr<Sink> m_sink;
};

/** Leads each request to the function that was registered for it. */
class Dispatcher
{
public:
    void handle(Session& session, const Protocol::Frame& frame);

    /** `Request::Reply handler(Session&, const Request&)`; may throw Error. */
    template <class Request, class Handler>
    void on(Handler handler)
    {
        add<Request>([handler](Session& session, const Request& request, Responder& responder) {
            responder.reply(Protocol::encode<typename Request::Reply>(handler(session, request)));
        });
    }

    /** `void handler(Session&, const Request&, Responder)`: answers now or later. May throw Error. */
    template <class Request, class Handler>
    void onDeferred(Handler handler)
    {
        add<Request>([handler](Session& session, const Request& request, Responder& responder) {
            handler(session, request, responder);
        });
    }

private:
    /** False for a body that is no such request. */
    using Function = std::function<bool(Session&, const QByteArray&, Responder&)>;

    template <class Request, class Handler>
    void add(Handler handler)
    {
        m_functions.insert(int(Request::number),
                           [handler](Session& session, const QByteArray& body, Responder& responder) {
                               Request request;
                               if (!Protocol::decode(body, &request))
                                   return false;
                               handler(session, request, responder);
                               return true;
                           });
    }
    bool run(Session& session, int number, const QByteArray& body, Responder& responder);

    QHash<int, Function> m_functions;
};

} // namespace Torvix::Agent
