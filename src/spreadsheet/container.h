#pragma once

#include <cstdint>
#include <string>

namespace Swinder {

using ByteString = std::basic_string<std::uint8_t>;

/** What the compound file around a workbook holds. */
struct Container
{
    /** The BIFF stream: "Workbook", or "Book" of the older versions. */
    ByteString workbook;
    /** An encrypted package of the newer format, which carries no BIFF stream. */
    bool encrypted = false;
};

/** @throws DamagedFile when the file cannot be read or is no compound file with a workbook in it */
Container readContainer(const char* fileName);

/** The same for a file's content in memory. */
Container readContainer(const ByteString& content);

} // namespace Swinder
