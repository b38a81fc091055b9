#pragma once

#include "protocol/frame.h"
#include "protocol/greeting.h"

namespace Torvix::Protocol {

/** The shared secret of one application start: tokenSize random bytes. */
QByteArray makeToken();

/** 32 hexadecimal digits, as in TORVIX_AGENT_TOKEN. */
QByteArray tokenToText(const QByteArray& token);
/** Empty when the text is not 32 hexadecimal digits; space around them is ignored. */
QByteArray tokenFromText(const QByteArray& text);

/** Takes the same time whatever differs; false for any that is not tokenSize bytes. */
bool sameToken(const QByteArray& expected, const QByteArray& shown);

/**
 * What to do with the first frame from the other side: nothing wrong gives an empty text and fills
 * `*hello`. Otherwise a text for the log, never for the other side unless `*tell` says so.
 *
 * @param expectedToken the secret when the other side connected to us; empty when we connected
 * @param expectedRole the part that the other side must play
 * @param tell set when the text should be sent as an Error frame (a version that differs)
 */
QString checkHello(const Frame& frame, const QByteArray& expectedToken, Role expectedRole, Hello* hello,
                   bool* tell);

} // namespace Torvix::Protocol
