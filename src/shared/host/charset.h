#pragma once

#include <string>

namespace Torvix {

/**
 * `text`, read in the encoding `from`, written in the encoding `to`. The names are those of
 * iconv_open(3), where "" means the encoding of the current locale.
 *
 * There is no partial result: an unknown encoding, or one character that cannot be read or written,
 * gives an empty string, and perror(3) tells the cause on the standard error stream.
 */
std::string mbs2mbs(const std::string& text, const char* from, const char* to);

/** UTF-8 to the encoding of the current locale; empty on failure, as mbs2mbs(). */
std::string utf8ToLocal8Bit(const std::string& text);

/** The encoding of the current locale to UTF-8; empty on failure, as mbs2mbs(). */
std::string local8BitToUTF8(const std::string& text);

} // namespace Torvix
