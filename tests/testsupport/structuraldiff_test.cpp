#include "testsupport/verification/structuraldiff.h"

#include <gtest/gtest.h>

namespace {

using namespace Torvix;

struct Comparison
{
    const char* expected;
    const char* actual;
    const char* finding; ///< differences joined by newlines, or the error
};

void check(const std::vector<Comparison>& table,
           StructuralDifference (*compare)(const QByteArray&, const QByteArray&))
{
    for (const Comparison& row : table) {
        const StructuralDifference found = compare(row.expected, row.actual);
        const QString finding = found.error.isEmpty() ? found.differences.join('\n') : found.error;
        EXPECT_EQ(row.finding, finding.toStdString()) << row.expected << "  against  " << row.actual;
    }
}

TEST(XmlComparison, SeesStructureAndNotItsForm)
{
    check(
        {
            {"<a x='1' y=\"2\"><b/></a>",
             "<?xml version='1.0'?>\n<!-- c --><a y='2'\n x='1'>\n  <b></b>\n</a>", ""},
            {"<a>t &amp; u</a>", "<a><![CDATA[t & u]]></a>", ""},
            {"<p:a xmlns:p='u'/>", "<a xmlns='u'/>", ""},
            {"<a xmlns='u'/>", "<a/>", "/{u}a: expected <{u}a>, found <a>"},
            {"<a x='1' y='2'/>", "<a x='3' z='4'/>",
             "/a/@x: expected '1', found '3'\n/a/@y: expected '2', found nothing\n"
             "/a/@z: expected nothing, found '4'"},
            {"<a><b/><b>1</b></a>", "<a><b/><b>2</b><c/></a>",
             "/a/b[2]/text(): expected '1', found '2'\n/a/c[1]: expected nothing, found <c>"},
            {"<a><b/><c/></a>", "<a><c/><b/></a>",
             "/a/b[1]: expected <b>, found <c>\n/a/c[1]: expected <c>, found <b>"},
            {"<a/>", "<a>", "The actual document is not well formed: line 1: Premature end of document."},
        },
        compareXml);
}

TEST(XmlComparison, RefusesWhatWouldOverflowTheStack)
{
    const QByteArray deep = QByteArray("<a>").repeated(100'000) + QByteArray("</a>").repeated(100'000);
    EXPECT_TRUE(compareXml(deep, deep).error.contains("nested too deeply"));
}

TEST(JsonComparison, SeesStructureAndNotItsForm)
{
    check(
        {
            {"{\"a\":1,\"b\":[true,null]}", " {\"b\" : [ true, null ],\n\"a\" : 1.0 }", ""},
            {"3", "4", "$: expected 3, found 4"},
            {"{\"a\":{\"b\":[1,2]}}", "{\"a\":{\"b\":[1,\"2\",3]},\"c\":null}",
             "$.a.b[1]: expected 2, found \"2\"\n$.a.b[2]: expected nothing, found 3\n"
             "$.c: expected nothing, found null"},
            {"[1,2]", "{\"0\":1}", "$: expected [1,2], found {\"0\":1}"},
            {"1", "1 2", "The actual document is no JSON: line 1: missing value separator"},
            {"", "1", "The expected document is no JSON: line 1: it is no single value"},
        },
        compareJson);
}

TEST(StructuralComparisons, ShowTheFirstDifferencesAndCountTheRest)
{
    QByteArray expected = "[";
    QByteArray actual = "[";
    for (int i = 0; i < 50; ++i) {
        expected += QByteArray::number(i) + ",";
        actual += QByteArray::number(-i - 1) + ",";
    }
    const QStringList differences = compareJson(expected + "0]", actual + "0]").differences;
    EXPECT_EQ(StructuralDifference::maxShown + 1, differences.size());
    EXPECT_EQ("... and 30 more", differences.last());
}

} // namespace
