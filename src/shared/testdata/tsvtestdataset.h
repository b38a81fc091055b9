#pragma once

#include "shared/testdata/testdata.h"

namespace Torvix {

class TsvParser;

/** A table of delimited text. A file without a first line gives a header of the one column "1". */
class TsvTestDataSet : public TestDataSet
{
public:
    TsvTestDataSet(const QString& fileName, char sep);
    /** Reads the parser's file from its start. The parser stays the caller's. */
    TsvTestDataSet(TsvParser* parser, char sep);

    /** Adds what the parser has from where it stands up to a blank line. */
    void parse(TsvParser* parser, char sep);
};

} // namespace Torvix
