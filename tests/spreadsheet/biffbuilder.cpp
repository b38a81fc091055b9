#include "spreadsheet/biffbuilder.h"

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <gsf/gsf-outfile-msole.h>
#include <gsf/gsf-outfile.h>
#include <gsf/gsf-output-stdio.h>
#include <iterator>
#include <unistd.h>

namespace Biff {

Bytes u8(unsigned value)
{
    return Bytes(1, static_cast<char>(value));
}

Bytes u16(unsigned value)
{
    return u8(value & 0xFF) + u8(value >> 8);
}

Bytes u32(std::uint32_t value)
{
    return u16(value & 0xFFFF) + u16(value >> 16);
}

Bytes f64(double value)
{
    Bytes bytes(sizeof value, '\0');
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

Bytes wide(const std::u16string& text)
{
    Bytes bytes;
    for (const char16_t c : text)
        bytes += u16(c);
    return bytes;
}

Bytes record(unsigned id, const Bytes& body)
{
    return u16(id) + u16(static_cast<unsigned>(body.size())) + body;
}

Bytes at(unsigned row, unsigned column)
{
    return u16(row) + u16(column) + u16(0);
}

Bytes workbookStream(unsigned version, const Bytes& globals, const std::vector<SheetSource>& sheets)
{
    const auto bof = [&](unsigned type) {
        return record(0x0809,
                      u16(version) + u16(type) + u32(0) + (version == Biff8 ? u32(0) + u32(6) : Bytes()));
    };
    const Bytes end = record(0x000A, "");
    const auto list = [&](std::size_t firstOffset) {
        Bytes bounds;
        std::size_t offset = firstOffset;
        for (const SheetSource& sheet : sheets) {
            bounds +=
                record(0x0085, u32(static_cast<std::uint32_t>(offset)) + u8(0) + u8(sheet.kind) + sheet.name);
            offset += bof(sheet.bof).size() + sheet.records.size() + end.size();
        }
        return bounds;
    };
    const Bytes start = bof(0x0005) + globals;
    Bytes stream = start + list(start.size() + list(0).size() + end.size()) + end;
    for (const SheetSource& sheet : sheets)
        stream += bof(sheet.bof) + sheet.records + end;
    return stream;
}

Bytes oneSheet(unsigned version, const Bytes& globals, const Bytes& cells)
{
    const Bytes name = version == Biff8 ? name8("Sheet") : u8(5) + "Sheet";
    return workbookStream(version, globals, {{name, cells, 0, 0x0010}});
}

Bytes name8(const std::string& text)
{
    return u8(static_cast<unsigned>(text.size())) + u8(0) + text;
}

void writeContainer(const std::string& fileName, const char* streamName, const Bytes& stream)
{
    GsfOutput* file = gsf_output_stdio_new(fileName.c_str(), nullptr);
    GsfOutfile* container = gsf_outfile_msole_new(file);
    GsfOutput* child = gsf_outfile_new_child(container, streamName, FALSE);
    gsf_output_write(child, stream.size(), reinterpret_cast<const guint8*>(stream.data()));
    gsf_output_close(child);
    g_object_unref(child);
    gsf_output_close(GSF_OUTPUT(container));
    g_object_unref(container);
    g_object_unref(file);
}

TemporaryFile::TemporaryFile(const Bytes& content)
{
    const char* folder = std::getenv("TMPDIR");
    m_name = std::string(folder ? folder : "/tmp") + "/torvix-biff-XXXXXX";
    close(mkstemp(m_name.data()));
    std::ofstream(m_name, std::ios::binary)
        .write(content.data(), static_cast<std::streamsize>(content.size()));
}

TemporaryFile::~TemporaryFile()
{
    unlink(m_name.c_str());
}

Bytes readFile(const std::string& fileName)
{
    std::ifstream file(fileName, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

} // namespace Biff
