#include "objectmodel/inspector.h"
#include "objectmodel/objectmap.h"
#include "objectmodel/objectname.h"
#include "protocol/itempath.h"

#include <gtest/gtest.h>

namespace {

using namespace Torvix;

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

TEST(ObjectName, ReadsAndWritesTheTextForm)
{
    const struct
    {
        const char* written;
        const char* canonical;
    } cases[] = {
        {"{}", "{}"},
        {" { type = 'QPushButton' , text='OK' } ", "{type='QPushButton' text='OK'}"},
        {"{visible=true name=\"it's\" occurrence=2}", "{name='it\\'s' occurrence=2 visible=true}"},
        {"{text*='Sa?e*' title~='\\\\d+'}", "{text*='Sa?e*' title~='\\\\d+'}"},
        {"{window={type='QDialog' window='Main'} x=-1.5}", "{window={type='QDialog' window='Main'} x=-1.5}"},
        {"{'odd key'='a\\nb\\t\\u{7}\\u{1f642}'}", "{'odd key'='a\\nb\\t\\u{7}\xf0\x9f\x99\x82'}"},
        {"{text=''}", "{text=''}"},
        {"{text='{}'}", "{text='{}'}"},
    };
    for (const auto& entry : cases) {
        const Result<ObjectName> name = ObjectName::fromString(text(entry.written));
        EXPECT_EQ(QString(), name.error()) << entry.written;
        EXPECT_EQ(text(entry.canonical), name->toString());
        EXPECT_EQ(*name, *ObjectName::fromString(name->toString())) << entry.written;
    }
}

TEST(ObjectName, AnyTextSurvives)
{
    QString all;
    for (ushort c = 1; c < 0x2100; ++c)
        all += QChar(c);
    ObjectName name;
    name.set(all, PropertyValue(all, PropertyValue::Wildcard));
    const Result<ObjectName> again = ObjectName::fromString(name.toString());
    EXPECT_EQ(name, *again);
    EXPECT_EQ(QString(), again.error());
    EXPECT_FALSE(name.toString().contains(QLatin1Char('\n'))) << "an entry of the map is one line";
}

TEST(ObjectName, SaysWhatIsWrongAndWhere)
{
    const struct
    {
        const char* written;
        const char* error;
    } cases[] = {
        {"{type='A'", "expected '}' at column 10"},
        {"{type='A", "the closing quote is missing at column 7"},
        {"{type 'A'}", "expected '=' at column 7"},
        {"{type=A}", "the value A needs quotes at column 8"},
        {"{type=}", "a value is missing at column 7"},
        {"{a='1' a='2'}", "'a' is there twice at column 9"},
        {"{a='1'} x", "unexpected 'x' at column 9"},
        {"{a='\\q'}", "unknown escape '\\q' at column 7"},
        {"{a='\\u{110000}'}", "'\\u{...}' needs a code point"},
        {"{a~={b='1'}}", "another object's name goes with '=' only at column 5"},
        {"type='A'", "expected '{' at column 1"},
        {"", "expected '{' at column 1"},
    };
    for (const auto& entry : cases) {
        const QString error = ObjectName::fromString(text(entry.written)).error();
        EXPECT_TRUE(error.startsWith(text(entry.error))) << entry.written << ": " << qPrintable(error);
    }
    const QString error =
        ObjectName::fromString(QString(100, QLatin1Char('{')).replace(text("{"), text("{a="))).error();
    EXPECT_TRUE(error.contains(text("nested too deeply"))) << qPrintable(error);
}

TEST(ObjectName, BecomesConditionsWithSymbolicNamesResolved)
{
    ObjectMap map;
    map.insert(text("Main"), *ObjectName::fromString(text("{type='QMainWindow'}")));
    map.insert(text("Loop"), *ObjectName::fromString(text("{window='Loop2'}")));
    map.insert(text("Loop2"), *ObjectName::fromString(text("{container='Loop'}")));
    map.insert(text("Nothing"), ObjectName());
    const auto conditions = [&map](const char* written) {
        return ObjectName::fromString(text(written))->toConditions(&map);
    };
    const auto whole = conditions("{text~='a.c' window='Main' occurrence=2 x*='?'}");
    ASSERT_EQ(4, whole->size()) << qPrintable(whole.error());
    const Protocol::NameConditions& result = *whole;
    EXPECT_EQ(text("occurrence"), result[0].property);
    EXPECT_EQ(text("2"), result[0].text);
    EXPECT_EQ(Protocol::Match::RegularExpression, result[1].match);
    ASSERT_TRUE(result[2].isNested);
    EXPECT_EQ(text("QMainWindow"), result[2].nested[0].text);
    EXPECT_EQ(Protocol::Match::Wildcard, result[3].match);
    EXPECT_EQ(text("{occurrence=2 text~='a.c' window={type='QMainWindow'} x*='?'}"),
              ObjectName::fromConditions(result).toString());

    const struct
    {
        const char* written;
        const char* error;
    } failing[] = {
        {"{window='Nobody'}", "'Nobody' (window) is not a symbolic name"},
        {"{window='Loop'}", "contains itself"},
        {"{text~='('}", "not valid"},
        {"{}", "An empty name would match every object"},
        {"{text='x' window={}}", "The name of the window is empty: it would match every object"},
        {"{text={}}", "The name of the text is empty"},
        {"{window={type='A' container={}}}", "The name of the container is empty"},
        {"{buddy='Nothing'}", "The name of the buddy is empty"},
        {"{window=''}", "'' (window) is not a symbolic name"},
    };
    for (const auto& entry : failing) {
        const QString error = conditions(entry.written).error();
        EXPECT_TRUE(error.contains(text(entry.error))) << entry.written << ": " << qPrintable(error);
    }
}

TEST(ItemPath, SplitsAtDotsAndKeepsEscapedOnes)
{
    const struct
    {
        const char* path;
        QStringList texts;
    } cases[] = {
        {"File.Open", {text("File"), text("Open")}},
        {"Dot\\.and\\.more", {text("Dot.and.more")}},
        {"Wal\\\\nut.x", {text("Wal\\nut"), text("x")}},
        {"C:\\dir", {text("C:\\dir")}},
        {"", {text("")}},
        {"a..b.", {text("a"), text(""), text("b"), text("")}},
        {"File.Save As...", {text("File"), text("Save As...")}},
        {"More....Options...", {text("More..."), text("Options...")}},
        {"a.\\.\\.\\.b", {text("a"), text("...b")}},
        {"a\\.\\.\\.\\.b", {text("a....b")}},
    };
    for (const auto& entry : cases) {
        EXPECT_EQ(entry.texts, Protocol::splitItemPath(text(entry.path))) << entry.path;
        EXPECT_EQ(entry.texts, Protocol::splitItemPath(Protocol::joinItemPath(entry.texts))) << entry.path;
    }
}

} // namespace
