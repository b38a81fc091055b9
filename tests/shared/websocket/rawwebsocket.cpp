#include "shared/websocket/rawwebsocket.h"

#include <QCryptographicHash>

namespace TorvixTest {

namespace {

std::string field(const std::string& request, const std::string& name)
{
    const std::string start = "\r\n" + name + ": ";
    const std::size_t at = request.find(start);
    if (at == std::string::npos)
        return {};
    const std::size_t value = at + start.size();
    return request.substr(value, request.find("\r\n", value) - value);
}

std::string applyMask(std::string payload, const std::string& mask)
{
    for (std::size_t i = 0; i < payload.size(); ++i)
        payload[i] = static_cast<char>(payload[i] ^ mask[i % 4]);
    return payload;
}

std::size_t bigEndian(const std::string& bytes)
{
    std::size_t value = 0;
    for (const char byte : bytes)
        value = value << 8 | static_cast<unsigned char>(byte);
    return value;
}

} // namespace

std::string acceptHandshake(RawConnection& connection)
{
    const std::string request = connection.readUntil("\r\n\r\n");
    const std::string key = field(request, "Sec-WebSocket-Key") + "258EAFA5-E914-47DA-95CA-C5AB0DC85B11";
    const QByteArray digest =
        QCryptographicHash::hash(QByteArray::fromStdString(key), QCryptographicHash::Sha1);
    connection.write("HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
                     "Sec-WebSocket-Accept: " +
                     digest.toBase64().toStdString() + "\r\n\r\n");
    return request;
}

std::string frameHeader(int opcode, bool final, std::size_t length)
{
    std::string header(1, static_cast<char>((final ? 0x80 : 0) | opcode));
    if (length < 126)
        return header + static_cast<char>(length);
    const int bytes = length < 65536 ? 2 : 8;
    header += static_cast<char>(bytes == 2 ? 126 : 127);
    for (int shift = (bytes - 1) * 8; shift >= 0; shift -= 8)
        header += static_cast<char>(length >> shift & 0xff);
    return header;
}

std::string frame(int opcode, bool final, const std::string& payload)
{
    return frameHeader(opcode, final, payload.size()) + payload;
}

std::string maskedFrame(int opcode, bool final, const std::string& payload)
{
    const std::string mask = "\x12\x34\x56\x78";
    std::string header = frameHeader(opcode, final, payload.size());
    header[1] = static_cast<char>(header[1] | 0x80);
    return header + mask + applyMask(payload, mask);
}

Frame readFrame(RawConnection& connection)
{
    Frame result;
    const std::string start = connection.readExactly(2);
    if (start.size() < 2)
        return result;
    result.final = start[0] & 0x80;
    result.masked = start[1] & 0x80;
    std::size_t length = start[1] & 0x7f;
    if (length >= 126)
        length = bigEndian(connection.readExactly(length == 126 ? 2 : 8));
    const std::string mask = result.masked ? connection.readExactly(4) : std::string(4, '\0');
    result.payload = applyMask(connection.readExactly(length), mask);
    result.opcode = start[0] & 0x0f;
    return result;
}

} // namespace TorvixTest
