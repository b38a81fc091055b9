#include "shared/testdata/exceltestdataset.h"

#include "shared/testdata/excelcells.h"
#include "spreadsheet/workbook.h"

#include <QFile>
#include <QtGlobal>
#include <cstdio>

namespace Torvix {

namespace {

constexpr char NoSeparator = '$'; // nothing writes such a table, and nothing reads one back
constexpr unsigned DiagonalsSearched = 50;

struct Corner
{
    bool found = false;
    unsigned column = 0;
    unsigned row = 0;
};

bool hasText(const Swinder::Cell* cell)
{
    return cell && !cell->value().isEmpty() && !cell->value().asString().isEmpty();
}

Corner findCorner(Swinder::Sheet& sheet)
{
    const Swinder::Cell* probed = nullptr;
    for (unsigned diagonal = 0; diagonal < DiagonalsSearched; ++diagonal) {
        for (unsigned row = 0; row <= diagonal; ++row) {
            probed = sheet.cell(diagonal - row, row, false);
            if (hasText(probed))
                return {true, diagonal - row, row};
        }
    }
    // Intended: when the last cell looked at exists, the search ends at the sheet's first cell, and it is
    // the header that is then found missing.
    return {probed != nullptr, 0, 0};
}

Swinder::Sheet* findSheet(Swinder::Workbook& book, const QString& name)
{
    if (name.isEmpty())
        return book.sheet(0);
    for (unsigned i = 0; i < book.sheetCount(); ++i) {
        if (toQString(book.sheet(i)->name()) == name)
            return book.sheet(i);
    }
    std::fprintf(stderr, "torvixrunner: sheet not found: %s\n", qPrintable(name));
    return nullptr;
}

} // namespace

ExcelTestDataSet::ExcelTestDataSet(const QString& fileName, const QString& sheetName)
    : TestDataSet(fileName, NoSeparator, true)
{
    Swinder::Workbook book(nullptr);
    if (!book.load(QFile::encodeName(fileName).constData()))
        qWarning("Couldn't load %s", qPrintable(fileName));
    else if (book.isPasswordProtected())
        qWarning("passwd protected");
    else if (book.sheetCount() == 0)
        qWarning("no sheets found");
    else if (Swinder::Sheet* sheet = findSheet(book, sheetName))
        readTable(*sheet);
}

void ExcelTestDataSet::readTable(Swinder::Sheet& sheet)
{
    const Corner corner = findCorner(sheet);
    if (!corner.found) {
        qWarning("no table found");
        return;
    }
    const int width = readHeader(sheet, corner.column, corner.row);
    if (width == 0) {
        qWarning("no head line found");
        return;
    }
    for (unsigned row = corner.row + 1; readRow(sheet, corner.column, row, unsigned(width));)
        ++row;
}

int ExcelTestDataSet::readHeader(Swinder::Sheet& sheet, unsigned column, unsigned row)
{
    auto names = std::make_unique<TestDataRecord>(this, -1);
    for (;; ++column) {
        Swinder::Cell* cell = sheet.cell(column, row, false);
        if (!hasText(cell))
            break;
        names->addValue(cellToString(cell));
    }
    const int width = names->count();
    if (width > 0)
        setHeader(names.release());
    return width;
}

bool ExcelTestDataSet::readRow(Swinder::Sheet& sheet, unsigned column, unsigned row, unsigned width)
{
    auto record = std::make_unique<TestDataRecord>(this, -1);
    qint64 characters = 0;
    for (unsigned i = 0; i < width; ++i) {
        Swinder::Cell* cell = sheet.cell(column + i, row, false);
        const bool isEmpty = !cell || cell->value().isEmpty();
        const QString text = isEmpty ? QStringLiteral("") : cellToString(cell);
        characters += text.size();
        record->addValue(text);
    }
    if (characters == 0)
        return false;
    addRecord(record.release());
    return true;
}

} // namespace Torvix
