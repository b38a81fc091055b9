#include "spreadsheet/container.h"

#include "spreadsheet/bytereader.h"

#include <cstdio>
#include <gsf/gsf-infile-msole.h>
#include <gsf/gsf-infile.h>
#include <gsf/gsf-input-memory.h>
#include <memory>

namespace Swinder {

namespace {

struct FileCloser
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};

struct Unref
{
    void operator()(void* object) const { g_object_unref(object); }
};

using InputPtr = std::unique_ptr<GsfInput, Unref>;
using InfilePtr = std::unique_ptr<GsfInfile, Unref>;

/** Keeps the container library quiet while it is in scope: damage is reported by the result. */
class QuietLibrary
{
public:
    QuietLibrary() : m_previous(g_log_set_default_handler(ignore, nullptr)) {}
    ~QuietLibrary() { g_log_set_default_handler(m_previous, nullptr); }
    QuietLibrary(const QuietLibrary&) = delete;
    QuietLibrary& operator=(const QuietLibrary&) = delete;

private:
    static void ignore(const char*, GLogLevelFlags, const char*, void*) {}

    GLogFunc m_previous;
};

/** No workbook of this format comes near it; what is larger is something else. */
constexpr std::size_t MaxFileSize = std::size_t(1) << 30;

ByteString readFile(const char* fileName)
{
    const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(fileName, "rb"));
    if (!file)
        throw DamagedFile("cannot be opened");
    ByteString content;
    std::uint8_t block[65536];
    while (const std::size_t count = std::fread(block, 1, sizeof block, file.get())) {
        content.append(block, count);
        if (content.size() > MaxFileSize)
            throw DamagedFile("too large");
    }
    if (std::ferror(file.get()))
        throw DamagedFile("cannot be read");
    return content;
}

ByteString readStream(GsfInput* stream, std::size_t containerSize)
{
    const gsf_off_t size = gsf_input_size(stream);
    // Sectors are never shared, so a stream that claims more than the whole file has a false length.
    if (size < 0 || static_cast<std::uint64_t>(size) > containerSize)
        throw DamagedFile("stream longer than its file");
    ByteString bytes(static_cast<std::size_t>(size), 0);
    if (size > 0 && !gsf_input_read(stream, bytes.size(), bytes.data()))
        throw DamagedFile("stream cannot be read");
    return bytes;
}

} // namespace

Container readContainer(const char* fileName)
{
    return readContainer(readFile(fileName));
}

Container readContainer(const ByteString& content)
{
    const QuietLibrary quiet;
    const InputPtr input(gsf_input_memory_new(content.data(), static_cast<gsf_off_t>(content.size()), FALSE));
    const InfilePtr file(input ? gsf_infile_msole_new(input.get(), nullptr) : nullptr);
    if (!file)
        throw DamagedFile("no compound file");

    Container result;
    // A file for two versions at once holds both streams; the newer one says more.
    for (const char* name : {"Workbook", "Book"}) {
        if (const InputPtr stream{gsf_infile_child_by_name(file.get(), name)}) {
            result.workbook = readStream(stream.get(), content.size());
            return result;
        }
    }
    result.encrypted = InputPtr(gsf_infile_child_by_name(file.get(), "EncryptedPackage")) != nullptr;
    if (!result.encrypted)
        throw DamagedFile("no workbook inside");
    return result;
}

} // namespace Swinder
