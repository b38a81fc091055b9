#include "spreadsheet/sheetreader.h"

#include "spreadsheet/recordstream.h"
#include "spreadsheet/stringrecords.h"

#include <cstring>

namespace Swinder {

namespace {

constexpr std::uint16_t WorksheetSubstream = 0x0010;
constexpr std::uint16_t DialogFlag = 0x0010; // of the sheet's properties

/** What a formula record holds in place of a number: the first byte when the last two are all ones. */
enum FormulaResult : std::uint8_t { TextFollows = 0, BooleanResult = 1, ErrorResult = 2, EmptyText = 3 };

/** A packed number: 30 bits of a double or of an integer, and whether it counts hundredths. */
double rkNumber(std::uint32_t rk)
{
    double number;
    if (rk & 2) {
        number = static_cast<std::int32_t>(rk) >> 2;
    } else {
        const std::uint64_t bits = static_cast<std::uint64_t>(rk & 0xFFFFFFFC) << 32;
        std::memcpy(&number, &bits, sizeof number);
    }
    return rk & 1 ? number / 100 : number;
}

class SheetReader
{
public:
    SheetReader(ByteView substream, WorkbookGlobals& globals, Sheet& sheet)
        : m_records(substream)
        , m_globals(globals)
        , m_sheet(sheet)
    {
    }

    bool read();

private:
    struct Place
    {
        unsigned row;
        unsigned column;
    };

    void readRecord();
    void readFormula(ByteReader body);
    void readFormulaText();
    void readMulRk(ByteReader body);
    void readBoolError(ByteReader body);
    void readLabel();
    void readLabelShared(ByteReader body);

    /** The place that every cell record starts with; passes the cell's format, which follows it. */
    static Place place(ByteReader& body);
    Cell& put(Place place, Value value);
    Value byteText(ByteReader& body, bool rich);

    RecordStream m_records;
    WorkbookGlobals& m_globals;
    Sheet& m_sheet;
    Cell* m_formula = nullptr; // waits for the text of its result
    bool m_isDialog = false;
};

bool SheetReader::read()
{
    m_records.next();
    if (m_records.id() != BofRecord)
        throw DamagedFile("no sheet at its offset");
    ByteReader start(m_records.body());
    start.skip(2); // the version, which is the workbook's
    if (start.u16() != WorksheetSubstream)
        return false;

    // A chart within the sheet is a substream of its own inside this one.
    for (int depth = 1;;) {
        m_records.next();
        if (m_records.id() == BofRecord)
            ++depth;
        else if (m_records.id() == EofRecord && --depth == 0)
            return !m_isDialog;
        else if (depth == 1)
            readRecord();
    }
}

void SheetReader::readRecord()
{
    ByteReader body(m_records.body());
    switch (m_records.id()) {
    case SheetPropertiesRecord:
        m_isDialog = body.u16() & DialogFlag;
        break;
    case NumberRecord: {
        const Place at = place(body);
        put(at, Value::number(body.f64()));
        break;
    }
    case RkRecord: {
        const Place at = place(body);
        put(at, Value::number(rkNumber(body.u32())));
        break;
    }
    case MulRkRecord:
        readMulRk(body);
        break;
    case BoolErrorRecord:
        readBoolError(body);
        break;
    case FormulaRecord:
        readFormula(body);
        break;
    case StringRecord:
        readFormulaText();
        break;
    case LabelRecord:
    case RStringRecord:
        readLabel();
        break;
    case LabelSharedRecord:
        readLabelShared(body);
        break;
    default:
        break;
    }
}

SheetReader::Place SheetReader::place(ByteReader& body)
{
    const unsigned row = body.u16();
    const unsigned column = body.u16();
    body.skip(2);
    return {row, column};
}

Cell& SheetReader::put(Place place, Value value)
{
    Cell* cell = m_sheet.cell(place.column, place.row, true);
    if (!cell)
        throw DamagedFile("cell outside the sheet");
    cell->setValue(std::move(value));
    m_formula = nullptr;
    return *cell;
}

void SheetReader::readMulRk(ByteReader body)
{
    unsigned row = body.u16();
    unsigned column = body.u16();
    // Each number is preceded by its format; the last column, which stands behind them, says nothing new.
    for (; body.remaining() >= 6; ++column) {
        body.skip(2);
        put({row, column}, Value::number(rkNumber(body.u32())));
    }
}

void SheetReader::readBoolError(ByteReader body)
{
    const Place at = place(body);
    const std::uint8_t value = body.u8();
    const bool isError = body.u8() != 0;
    put(at, isError ? Value::error(value) : Value::boolean(value != 0));
}

void SheetReader::readFormula(ByteReader body)
{
    const Place at = place(body);
    const ByteView result = body.bytes(8);
    if (result.data[6] != 0xFF || result.data[7] != 0xFF) {
        put(at, Value::number(ByteReader(result).f64()));
        return;
    }
    switch (result.data[0]) {
    case TextFollows: {
        Cell& cell = put(at, Value::string(UString()));
        m_formula = &cell;
        break;
    }
    case BooleanResult:
        put(at, Value::boolean(result.data[2] != 0));
        break;
    case ErrorResult:
        put(at, Value::error(result.data[2]));
        break;
    case EmptyText:
        put(at, Value::string(UString()));
        break;
    default:
        throw DamagedFile("formula result of no known kind");
    }
}

void SheetReader::readFormulaText()
{
    if (!m_formula)
        return; // the text of something that is no cell
    Value text;
    if (m_globals.version == BiffVersion::Biff8) {
        ContinuedReader reader(m_records.bodyWithContinuations());
        const std::size_t length = reader.u16();
        text = readUnicodeText(reader, length);
    } else {
        ByteReader body(m_records.body());
        text = byteText(body, false);
    }
    m_formula->setValue(std::move(text));
    m_formula = nullptr;
}

void SheetReader::readLabel()
{
    const bool rich = m_records.id() == RStringRecord;
    if (m_globals.version == BiffVersion::Biff5) {
        ByteReader body(m_records.body());
        const Place at = place(body);
        put(at, byteText(body, rich));
        return;
    }
    ContinuedReader reader(m_records.bodyWithContinuations());
    const unsigned row = reader.u16();
    const unsigned column = reader.u16();
    reader.skip(2);
    const std::size_t length = reader.u16();
    const Value text = readUnicodeText(reader, length);
    put({row, column}, Value::string(text.asString(), rich || text.type() == Value::RichText));
}

void SheetReader::readLabelShared(ByteReader body)
{
    const Place at = place(body);
    const std::uint32_t index = body.u32();
    if (index >= m_globals.sharedStrings.size())
        throw DamagedFile("no such shared string");
    put(at, m_globals.sharedStrings[index]);
}

Value SheetReader::byteText(ByteReader& body, bool rich)
{
    const std::size_t length = body.u16();
    return Value::string(UString(m_globals.codePage.decode(body.bytes(length))), rich);
}

} // namespace

bool readSheet(ByteView substream, WorkbookGlobals& globals, Sheet& sheet)
{
    return SheetReader(substream, globals, sheet).read();
}

} // namespace Swinder
