#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Biff {

using Bytes = std::string;

Bytes u8(unsigned value);
Bytes u16(unsigned value);
Bytes u32(std::uint32_t value);
Bytes f64(double value);
/** UTF-16, little-endian. */
Bytes wide(const std::u16string& text);

Bytes record(unsigned id, const Bytes& body);

/** The row, column and format that cell records begin with. */
Bytes at(unsigned row, unsigned column);

struct SheetSource
{
    Bytes name;            // with its length in front
    Bytes records;         // between BOF and EOF
    unsigned kind = 0;     // of the list of sheets
    unsigned bof = 0x0010; // of the substream
};

constexpr unsigned Biff5 = 0x0500;
constexpr unsigned Biff8 = 0x0600;

/** A BIFF stream of these records before the list of sheets, and these sheets. */
Bytes workbookStream(unsigned version, const Bytes& globals, const std::vector<SheetSource>& sheets);

/** The same with one sheet. */
Bytes oneSheet(unsigned version, const Bytes& globals, const Bytes& cells);

/** A name as BIFF8 writes it, one byte a character. */
Bytes name8(const std::string& text);

/** Writes a compound file of one stream. */
void writeContainer(const std::string& fileName, const char* streamName, const Bytes& stream);

/** A file that is removed again. */
class TemporaryFile
{
public:
    explicit TemporaryFile(const Bytes& content = Bytes());
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const char* name() const { return m_name.c_str(); }

private:
    std::string m_name;
};

Bytes readFile(const std::string& fileName);

} // namespace Biff
