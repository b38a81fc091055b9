#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace Swinder {

/**
 * The file contradicts its format. Thrown by everything that reads bytes and caught by
 * Workbook::load; it never leaves the library.
 */
class DamagedFile : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/** Bytes that another object owns. */
struct ByteView
{
    ByteView() = default;
    ByteView(const std::uint8_t* bytes, std::size_t count) : data(bytes), size(count) {}
    explicit ByteView(const std::basic_string<std::uint8_t>& bytes) : data(bytes.data()), size(bytes.size())
    {
    }

    /** The part from `from` of at most `count` bytes. @throws DamagedFile when `from` is past the end */
    ByteView part(std::size_t from, std::size_t count) const;

    const std::uint8_t* data = nullptr;
    std::size_t size = 0;
};

/** Reads little-endian values one after the other. Every read past the end throws DamagedFile. */
class ByteReader
{
public:
    explicit ByteReader(ByteView bytes) : m_bytes(bytes) {}

    std::size_t remaining() const { return m_bytes.size - m_position; }
    std::uint8_t u8() { return *take(1); }
    std::uint16_t u16();
    std::uint32_t u32();
    /** An IEEE 754 double. */
    double f64();
    ByteView bytes(std::size_t count) { return ByteView(take(count), count); }
    void skip(std::size_t count) { take(count); }

private:
    const std::uint8_t* take(std::size_t count);

    ByteView m_bytes;
    std::size_t m_position = 0;
};

} // namespace Swinder
