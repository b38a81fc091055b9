#include "spreadsheet/workbookreader.h"

#include "spreadsheet/recordstream.h"
#include "spreadsheet/sheetreader.h"
#include "spreadsheet/stringrecords.h"

#include <algorithm>
#include <optional>

namespace Swinder {

namespace {

struct BoundSheet
{
    std::uint32_t offset = 0;
    std::uint8_t kind = 0;
    ByteView name; // from the length on; in BIFF5, its encoding may become known only later
};

constexpr std::uint8_t WorksheetKind = 0;

/** Collects what the records before the sheets say. */
class GlobalsReader
{
public:
    explicit GlobalsReader(ByteView stream) : m_records(stream) {}

    /** False when the workbook is encrypted: nothing after that can be read. */
    bool read();

    UString sheetName(const BoundSheet& sheet);

    WorkbookGlobals globals;
    std::vector<BoundSheet> sheets;

private:
    void readVersion();
    void readBoundSheet();

    RecordStream m_records;
};

bool GlobalsReader::read()
{
    readVersion();
    for (;;) {
        m_records.next();
        switch (m_records.id()) {
        case FilePassRecord:
            return false;
        case CodePageRecord:
            globals.codePage = CodePage(ByteReader(m_records.body()).u16());
            break;
        case BoundSheetRecord:
            readBoundSheet();
            break;
        case SharedStringsRecord:
            globals.sharedStrings = readSharedStrings(m_records.bodyWithContinuations());
            break;
        case EofRecord:
            return true;
        default:
            break;
        }
    }
}

void GlobalsReader::readVersion()
{
    m_records.next();
    if (m_records.id() != BofRecord)
        throw DamagedFile("no workbook stream");
    switch (ByteReader(m_records.body()).u16()) {
    case 0x0500:
        globals.version = BiffVersion::Biff5;
        break;
    case 0x0600:
        globals.version = BiffVersion::Biff8;
        break;
    default:
        throw DamagedFile("version not known");
    }
}

void GlobalsReader::readBoundSheet()
{
    ByteReader body(m_records.body());
    BoundSheet sheet;
    sheet.offset = body.u32();
    body.skip(1); // visibility: hidden sheets are read like others
    sheet.kind = body.u8();
    sheet.name = body.bytes(body.remaining());
    sheets.push_back(sheet);
}

UString GlobalsReader::sheetName(const BoundSheet& sheet)
{
    ByteReader reader(sheet.name);
    const std::size_t length = reader.u8();
    if (globals.version == BiffVersion::Biff5)
        return UString(globals.codePage.decode(reader.bytes(length)));
    ContinuedReader text({reader.bytes(reader.remaining())});
    return readUnicodeText(text, length).asString();
}

/**
 * Where each worksheet's bytes end at the latest: at the next one's start. With that, they are
 * disjoint and reading all of them costs no more than the file is long, whatever the offsets say.
 */
std::vector<std::size_t> sortedOffsets(const std::vector<BoundSheet>& sheets, std::size_t streamSize)
{
    std::vector<std::size_t> offsets{streamSize};
    for (const BoundSheet& sheet : sheets)
        if (sheet.kind == WorksheetKind) // the offset of a module may be anything
            offsets.push_back(sheet.offset);
    std::sort(offsets.begin(), offsets.end());
    if (std::adjacent_find(offsets.begin(), offsets.end()) != offsets.end() || offsets.back() > streamSize)
        throw DamagedFile("sheets overlap or lie past the end");
    return offsets;
}

} // namespace

WorkbookContents readWorkbook(ByteView stream)
{
    WorkbookContents contents;
    GlobalsReader reader(stream);
    if (!reader.read()) {
        contents.encrypted = true;
        return contents;
    }
    const std::vector<std::size_t> offsets = sortedOffsets(reader.sheets, stream.size);
    for (const BoundSheet& bound : reader.sheets) {
        if (bound.kind != WorksheetKind)
            continue;
        const std::size_t end = *std::upper_bound(offsets.begin(), offsets.end(), bound.offset);
        auto sheet = std::make_unique<Sheet>(reader.sheetName(bound));
        if (readSheet(stream.part(bound.offset, end - bound.offset), reader.globals, *sheet))
            contents.sheets.push_back(std::move(sheet));
    }
    return contents;
}

} // namespace Swinder
