// The sheets of `.xlsx` workbooks, read once more from a tree of the whole document by the plainest
// means: the single pass over the text must give the same.

#include "shared/testdata/ziparchive.h"
#include "tables.h"

#include <tinyxml.h>

namespace {

using namespace Torvix;

std::string textOf(const TiXmlElement* element)
{
    return element && element->GetText() ? element->GetText() : "";
}

class ReferenceReader
{
public:
    ReferenceReader(const QString& file, const char* member)
    {
        TiXmlBase::SetCondenseWhiteSpace(false);
        const ZipHandle archive = openZipArchive(file);
        void* zip = archive.get();
        m_strings.Parse(extractFromZipArchive(zip, "xl/sharedStrings.xml").first.constData());
        m_sheet.Parse(extractFromZipArchive(zip, member).first.constData());
        TiXmlBase::SetCondenseWhiteSpace(true);
    }

    /** Each row that the file has, as `column:text` of its cells. */
    QStringList rows()
    {
        readStrings();
        QStringList lines;
        TiXmlHandle data = TiXmlHandle(m_sheet.RootElement()).FirstChildElement("sheetData");
        for (auto* row = data.FirstChildElement("row").ToElement(); row;
             row = row->NextSiblingElement("row")) {
            QString line = QString::fromUtf8(row->Attribute("r"));
            for (auto* cell = row->FirstChildElement("c"); cell; cell = cell->NextSiblingElement("c"))
                line += "|" + QString(cell->Attribute("r")) + ":" + text(cell);
            lines += line;
        }
        return lines;
    }

private:
    void readStrings()
    {
        TiXmlHandle root(m_strings.RootElement());
        for (auto* si = root.FirstChildElement("si").ToElement(); si; si = si->NextSiblingElement("si")) {
            std::string whole;
            for (auto* t = si->FirstChildElement("t"); t; t = t->NextSiblingElement("t"))
                whole += textOf(t);
            for (auto* r = whole.empty() ? si->FirstChildElement("r") : nullptr; r;
                 r = r->NextSiblingElement("r"))
                whole += textOf(r->FirstChildElement("t"));
            m_shared.push_back(QString::fromStdString(whole));
        }
    }

    QString text(const TiXmlElement* cell) const
    {
        const char* type = cell->Attribute("t");
        if (type && type[0] == 's')
            return m_shared.value(QString::fromStdString(textOf(cell->FirstChildElement())).toInt());
        return QString::fromStdString(textOf(cell->FirstChildElement("v")));
    }

    TiXmlDocument m_strings;
    TiXmlDocument m_sheet;
    QVector<QString> m_shared;
};

/** The rows of a table in the same form, without the cells that only fill it up. */
QString asRow(const TestDataRecord* record, const QString& reference)
{
    QString line = reference.section('|', 0, 0);
    for (const QString& cell : reference.split('|').mid(1)) {
        int column = 0;
        for (const QChar c : cell.section(':', 0, 0))
            column = c.isLetter() ? column * 26 + c.unicode() - 'A' + 1 : column;
        line += "|" + cell.section(':', 0, 0) + ":" + record->valueAsString(column - 1);
    }
    return line;
}

TEST(ExcelXmlTestDataSet, ReadsAsATreeOfTheDocumentDoes)
{
    for (const char* file :
         {"openpyxl-rows.xlsx", "libreoffice.xlsx", "xlsxwriter-cells.xlsx", "gnumeric.xlsx"}) {
        const QStringList expected = ReferenceReader(fixture(file), "xl/worksheets/sheet1.xml").rows();
        const Table table(TestDataSet::createTestDataSet(fixture(file)));
        ASSERT_GT(expected.size(), 4) << file;
        for (const QString& row : expected) {
            const int number = row.section('|', 0, 0).toInt();
            const TestDataRecord* record = number == 1 ? table->header() : table->record(number - 2);
            ASSERT_NE(record, nullptr) << file << ", row " << number;
            EXPECT_EQ(asRow(record, row).toStdString(), row.toStdString()) << file;
        }
    }
}

} // namespace
