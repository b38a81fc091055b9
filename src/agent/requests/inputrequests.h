#pragma once

#include "agent/session/dispatcher.h"

namespace Torvix::Agent {

/** Answers with `body` once the application has had all input so far, or with what went wrong. */
void replyAfterInput(const Responder& responder, const QByteArray& body);

} // namespace Torvix::Agent
