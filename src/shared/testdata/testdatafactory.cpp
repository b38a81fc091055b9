#include "shared/testdata/exceltestdataset.h"
#include "shared/testdata/excelxmltestdataset.h"
#include "shared/testdata/testdata.h"
#include "shared/testdata/tsvparser.h"
#include "shared/testdata/tsvtestdataset.h"

#include <QFileInfo>
#include <array>
#include <optional>

namespace Torvix {

namespace {

constexpr int LinesForDetection = 3;

enum Candidate { Comma, Semicolon, Tab, CandidateCount };
constexpr char Separators[CandidateCount] = {',', ';', '\t'};

/** How often a candidate stands in each line looked at; -1 unless that is the same in all, and not 0. */
class Score
{
public:
    void addLine(int count)
    {
        m_score = count >= 1 && (!m_started || count == m_score) ? count : -1;
        m_started = true;
    }
    int value() const { return m_score; }

private:
    int m_score = -1;
    bool m_started = false;
};

std::optional<char> detectSeparator(TsvParser& parser)
{
    std::array<Score, CandidateCount> scores;
    for (int i = 0; i < LinesForDetection; ++i) {
        const QString line = parser.nextLine();
        if (line.isEmpty())
            break;
        for (int c = 0; c < CandidateCount; ++c)
            scores[std::size_t(c)].addLine(parser.countSeparator(line, Separators[c]));
    }
    // On equal scores the one that comes first wins.
    std::optional<char> best;
    int bestScore = -1;
    for (int c = 0; c < CandidateCount; ++c) {
        if (scores[std::size_t(c)].value() > bestScore) {
            bestScore = scores[std::size_t(c)].value();
            best = Separators[c];
        }
    }
    return best;
}

} // namespace

TestDataSet* TestDataSet::createTestDataSet(const QString& fileName)
{
    if (TestDataSet* workbook = createTestDataSetExcel(fileName, QString()))
        return workbook;
    const QString suffix = QFileInfo(fileName).suffix();
    TsvParser parser(fileName);
    std::optional<char> separator = detectSeparator(parser);
    if (suffix == QLatin1String("tsv"))
        separator = '\t';
    else if (suffix == QLatin1String("csv") && !separator)
        separator = ',';
    return separator ? new TsvTestDataSet(&parser, *separator) : nullptr;
}

TestDataSet* TestDataSet::createTestDataSetExcel(const QString& fileName, const QString& sheetName)
{
    const QString suffix = QFileInfo(fileName).suffix();
    if (suffix == QLatin1String("xls"))
        return new ExcelTestDataSet(fileName, sheetName);
    if (suffix == QLatin1String("xlsx"))
        return new ExcelXmlTestDataSet(fileName, sheetName);
    return nullptr;
}

} // namespace Torvix
