#include "shared/testdata/tsvtestdataset.h"

#include "shared/testdata/tsvparser.h"

namespace Torvix {

TsvTestDataSet::TsvTestDataSet(const QString& fileName, char sep) : TestDataSet(fileName, sep, false)
{
    TsvParser parser(fileName);
    parse(&parser, sep);
}

TsvTestDataSet::TsvTestDataSet(TsvParser* parser, char sep) : TestDataSet(parser->name(), sep, false)
{
    parser->rewind();
    parse(parser, sep);
}

void TsvTestDataSet::parse(TsvParser* parser, char sep)
{
    parser->parseRecords(this, sep);
    if (!header()) {
        auto fallback = std::make_unique<TestDataRecord>(this, -1);
        fallback->addValue(QStringLiteral("1"));
        setHeader(fallback.release());
    }
}

} // namespace Torvix
