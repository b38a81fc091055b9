#pragma once

#include "support/network/rawserver.h"

#include <string>

namespace TorvixTest {

/** A WebSocket frame (RFC 6455, 5.2) as it stood on the wire. */
struct Frame
{
    bool final = false;
    int opcode = -1;
    bool masked = false;
    std::string payload;
};

enum Opcode { Continuation = 0, Text = 1, Close = 8, Ping = 9, Pong = 10 };

/** Answers the client's handshake; returns its request. */
std::string acceptHandshake(RawConnection& connection);

/** The header bytes of a frame of `length` bytes, unmasked as servers send it. */
std::string frameHeader(int opcode, bool final, std::size_t length);
std::string frame(int opcode, bool final, const std::string& payload);
std::string maskedFrame(int opcode, bool final, const std::string& payload);

/** The next frame with its payload unmasked; its opcode is -1 at the end of the connection. */
Frame readFrame(RawConnection& connection);

} // namespace TorvixTest
