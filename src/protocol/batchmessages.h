#pragma once

#include "protocol/message.h"

#include <QByteArray>
#include <QVector>

/** Several requests in one frame. */
namespace Torvix::Protocol {

struct BatchItem
{
    int request = 0;
    QByteArray body;
    TORVIX_WIRE_FIELDS(request, body)
};

struct BatchResult
{
    /** 0 for success, else an ErrorClass; the body is then an ErrorText. */
    int error = 0;
    QByteArray body;
    TORVIX_WIRE_FIELDS(error, body)
};

struct BatchReply
{
    QVector<BatchResult> results;
    TORVIX_WIRE_FIELDS(results)
};

/**
 * Several requests in one round trip, answered in order; one that fails does not stop the rest.
 * Not allowed in it: Batch, WaitFor and FindItem with a timeout.
 */
struct Batch
{
    static constexpr auto number = RequestNumber::Batch;
    using Reply = BatchReply;
    QVector<BatchItem> requests;
    TORVIX_WIRE_FIELDS(requests)
};

} // namespace Torvix::Protocol
