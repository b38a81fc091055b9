#include "agent/session/dispatcher.h"

#include "agent/reflection/error.h"

namespace Torvix::Agent {

using namespace Protocol;

bool Dispatcher::run(Session& session, int number, const QByteArray& body, Responder& responder)
{
    const auto function = m_functions.constFind(number);
    if (function == m_functions.constEnd()) {
        responder.fail(ErrorClass::UnknownRequest, QStringLiteral("unknown request %1").arg(number));
        return true;
    }
    try {
        return (*function)(session, body, responder);
    } catch (const Error& error) {
        responder.fail(error.kind(), error.message());
    } catch (const std::exception& error) {
        responder.fail(
            ErrorClass::Failed,
            QStringLiteral("the application threw an exception: %1").arg(QString::fromUtf8(error.what())));
    } catch (...) {
        responder.fail(ErrorClass::Failed, QStringLiteral("the application threw an exception"));
    }
    return true;
}

void Dispatcher::handle(Session& session, const Frame& frame)
{
    Responder responder([weak = session.weak_from_this(), id = frame.id,
                         number = frame.number](ErrorClass error, const QByteArray& body) {
        const auto receiver = weak.lock();
        if (!receiver || id == 0)
            return;
        if (int(error) != 0)
            receiver->send({FrameKind::Error, id, quint16(error), body});
        else
            receiver->send({FrameKind::Reply, id, number, body});
    });
    if (run(session, frame.number, frame.body, responder))
        return;
    session.send(errorFrame(frame.id, ErrorClass::Malformed,
                            QStringLiteral("the body of request %1 is malformed").arg(frame.number)));
    session.flush(100);
    session.close();
}

} // namespace Torvix::Agent
