#pragma once

#include "objectmodel/export.h"
#include "protocol/greeting.h"
#include "protocol/message.h"
#include "shared/base/result.h"

#include <functional>

namespace Torvix {

/** Why a request got no reply. */
struct LinkError : Failure
{
    enum Kind {
        None,
        /** The other side answered with an error: see errorClass. */
        Answered,
        TimedOut,
        /** The process is stopped by a signal (SIGSTOP, a debugger). */
        Stopped,
        /** The connection is gone, and with it the application. */
        Closed
    };

    Kind kind = None;
    Protocol::ErrorClass errorClass = Protocol::ErrorClass::Failed;
};

/**
 * The road to one application: requests out, replies and pushes back. Over a socket it is a
 * Session; a LocalModel answers in this process.
 *
 * exchange() may be entered again while it runs: a push that arrives while it waits goes to the
 * sink at once, and the sink may make requests of its own.
 */
class TORVIXOBJECTMODEL_EXPORT ModelLink
{
public:
    /** Gets pushes, and replies that came when nobody waited for them any more. */
    using PushSink = std::function<void(const Protocol::Frame&)>;

    virtual ~ModelLink() = default;

    void setPushSink(PushSink sink) { m_sink = std::move(sink); }

    /**
     * Sends a request and waits for its reply.
     * @param timeoutMs how long to wait; negative: without limit
     * @return the body of the reply
     */
    virtual Result<QByteArray, LinkError> exchange(Protocol::RequestNumber number, const QByteArray& body,
                                                   int timeoutMs) = 0;
    /** Sends a request that has no reply. */
    virtual void post(Protocol::RequestNumber number, const QByteArray& body) = 0;

    /** Hands the pushes to the sink that arrive within the time; 0 takes those that are there. */
    virtual void pump(int timeoutMs) = 0;

    /** Ends the connection from here. */
    virtual void close(const QString& reason) = 0;
    virtual bool isOpen() const = 0;
    /** Why it is closed; empty while it is open. */
    virtual QString closeReason() const = 0;
    /** For waiting on several links at once; -1 when there is none. */
    virtual int descriptor() const { return -1; }
    /** The greeting of the application. */
    virtual Protocol::Hello peer() const = 0;

protected:
    void push(const Protocol::Frame& frame)
    {
        if (m_sink)
            m_sink(frame);
    }

private:
    PushSink m_sink;
};

} // namespace Torvix
