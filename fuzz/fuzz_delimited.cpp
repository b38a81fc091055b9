// Delimited text. The quick reader is held against the rules of the format, written out a character at
// a time, and a saved table must read as the table that was saved.

#include "memoryfile.h"
#include "shared/testdata/tsvparser.h"
#include "shared/testdata/tsvtestdataset.h"

#include <QStringList>
#include <cstdio>
#include <cstdlib>

using namespace Torvix;

namespace {

void require(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::abort();
    }
}

enum State { Unquoted, Quoted, QuoteSeen };

/** The logical lines of a text. */
QStringList linesOf(const QString& text)
{
    QStringList lines;
    int at = 0;
    while (at < text.size()) {
        QString line;
        State state = Unquoted;
        bool ended = false;
        while (at < text.size() && !ended) {
            const QChar c = text.at(at++);
            if (state == QuoteSeen)
                state = c == '"' ? Quoted : Unquoted;
            else if (state == Quoted)
                state = c == '"' && at < text.size() ? QuoteSeen : Quoted;
            else if (c == '"')
                state = Quoted;
            ended = state == Unquoted && c == '\n';
            if (!ended)
                line += c;
        }
        if (ended && line.endsWith('\r'))
            line.chop(1);
        lines += line;
    }
    return lines;
}

QStringList cellsOf(const QString& line, char sep)
{
    QStringList cells;
    int column = 0;
    State state = Unquoted;
    const auto append = [&](const QString& piece) {
        while (cells.size() <= column)
            cells += QString();
        cells[column] += piece;
    };
    for (int i = 0; i < line.size(); ++i) {
        const QChar c = line.at(i);
        if (state == QuoteSeen && c == '"') {
            state = Quoted;
            append(c);
        } else if (state == Quoted && c == '"') {
            state = i + 1 < line.size() ? QuoteSeen : Quoted;
        } else if (state == Quoted) {
            append(c);
        } else {
            const bool plain = state == QuoteSeen || c != '"';
            state = plain ? Unquoted : Quoted;
            if (c == sep) {
                ++column;
                append(QString());
            } else if (plain) {
                append(c);
            }
        }
    }
    return cells;
}

QStringList cellsOf(const TestDataRecord& record)
{
    QStringList cells;
    for (int i = 0; i < record.count(); ++i)
        cells += record.valueAsString(i);
    return cells;
}

void compareWithRules(const QString& name, const QString& text, char sep)
{
    const QStringList lines = linesOf(text);
    TsvParser parser(name);
    for (const QString& line : lines) {
        require(parser.nextLine() == line, "line");
        parser.countSeparator(line, sep);
    }
    const TsvTestDataSet table(name, sep);
    int expected = 0;
    while (expected < lines.size() && !lines.at(expected).isEmpty())
        ++expected;
    require(table.count() == std::max(0, expected - 1), "number of records");
    for (int i = 0; i < expected; ++i) {
        const TestDataRecord* record = i == 0 ? table.header() : table.record(i - 1);
        require(cellsOf(*record) == cellsOf(lines.at(i), sep), "cells");
    }
}

void saveAndReadAgain(const QString& name, char sep)
{
    TsvTestDataSet table(name, sep);
    const MemoryFile saved(nullptr, 0);
    require(table.save(QString::fromStdString(saved.name())), "save");
    const TsvTestDataSet again(QString::fromStdString(saved.name()), sep);
    require(again.count() == table.count(), "number of saved records");
    for (int i = 0; i < table.count(); ++i) {
        QStringList cells = cellsOf(*table.record(i));
        while (cells.size() < table.header()->count())
            cells += QString();
        if (cells == QStringList(QString()))
            cells.clear(); // one empty cell is written as no cell is
        require(cellsOf(*again.record(i)) == cells, "saved cells");
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const MemoryFile file(data, size);
    const QString name = QString::fromStdString(file.name());
    SharedPtr<TestDataSet>(TestDataSet::createTestDataSet(name));

    // As UTF-8 and without a mark; what is no UTF-8 reads differently when it is cut elsewhere.
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    const QByteArray clean = text.toUtf8();
    if (clean.size() == int(size) &&
        std::equal(clean.begin(), clean.end(), reinterpret_cast<const char*>(data))) {
        for (const char sep : {',', ';', '\t'})
            compareWithRules(name, text, sep);
        saveAndReadAgain(name, ',');
    }
    return 0;
}
