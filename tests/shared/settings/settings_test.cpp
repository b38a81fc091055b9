// Entries in memory: typed reading and writing, quoting, keys, variables.
#include "shared/settings/settings.h"
#include "support/messagecapture.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>

namespace {

using Torvix::Settings;

/** A store whose file is never written, and a look behind its warnings. */
class SettingsEntries : public testing::Test
{
protected:
    QString raw(const QString& key) const
    {
        QString value = "(none)";
        settings.readRawEntry("g", key, value);
        return value;
    }
    QStringList warnings() { return messages.take(); }

    QTemporaryDir directory;
    QString file = directory.path() + "/store.ini";
    MessageCapture messages;
    Settings settings{directory.path(), "store.ini"};
};

TEST_F(SettingsEntries, AreWrittenInTheirTypesForm)
{
    settings.writeEntry("g", "string", QString("a \"b\" \\ \n\r\t \u00e4\U0001F600'"));
    settings.writeEntry("g", "literal", "no bool");
    settings.writeEntry("g", "empty", QString());
    settings.writeEntry("g", "list", QStringList{"x", "", "y,\"z\""});
    settings.writeEntry("g", "none", QStringList());
    settings.writeEntry("g", "int", std::numeric_limits<int>::min());
    settings.writeEntry("g", "double", 1234567.89);
    settings.writeEntry("g", "small", -0.00001234);
    settings.writeEntry("g", "yes", true);
    settings.writeEntry("g", "no", false);

    EXPECT_EQ(QString(R"("a \"b\" \\ \n\r\t )") + "\u00e4\U0001F600'\"", raw("string"));
    EXPECT_EQ(R"("no bool")", raw("literal"));
    EXPECT_EQ(R"("")", raw("empty"));
    EXPECT_EQ(R"("x","","y,\"z\"")", raw("list"));
    EXPECT_EQ("", raw("none"));
    EXPECT_EQ("-2147483648", raw("int"));
    EXPECT_EQ("1.23457e+06", raw("double"));
    EXPECT_EQ("-1.234e-05", raw("small"));
    EXPECT_EQ("1", raw("yes"));
    EXPECT_EQ("0", raw("no"));
}

TEST_F(SettingsEntries, StringsAndListsComeBackAsTheyWere)
{
    const QStringList strings = {"",
                                 "plain",
                                 "a,b",
                                 "\"",
                                 "\\",
                                 "\\n",
                                 "\n\r\t\"\\",
                                 " x",
                                 "[g]",
                                 "#c",
                                 "k = \"v",
                                 "\u20ac",
                                 QString(QChar(0)) + "x"};
    for (const QString& string : strings) {
        settings.writeEntry("g", "k", string);
        EXPECT_EQ(string, settings.readEntry("g", "k", "default"));
    }
    settings.writeEntry("g", "k", strings);
    EXPECT_EQ(strings, settings.readListEntry("g", "k"));
    EXPECT_EQ(QStringList(), warnings());
}

TEST_F(SettingsEntries, ReadingOfText)
{
    const QString unquoted = "Torvix::Settings: string not delimited by quotes in " + file;
    const QString noString = "Torvix::Settings: entry is not a string in " + file;
    struct
    {
        const char* raw;
        QString string;
        QStringList list;
        QString warning;     // of reading the string
        QString listWarning; // of reading the list
    } const cases[] = {
        {R"( "x")", "x", {"x"}, "", ""},
        {R"("x" , stray "y")", "default", {"x", "y"}, noString, ""},
        {R"(junk"x"junk)", "x", {"x"}, "", ""},
        {"", "default", {}, noString, ""},
        {"word", "default", {}, noString, ""},
        {"12", "default", {}, noString, ""},
        {R"("")", "", {""}, "", ""},
        {R"("open)", "default", {"default"}, unquoted, unquoted},
        {R"(")", "default", {"default"}, unquoted, unquoted},
        {R"("x","\)", "default", {"default"}, unquoted, unquoted},
        {R"("x" \y "z")", "default", {"x", "z"}, noString, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.raw);
        settings.writeRawEntry("g", "k", c.raw);
        EXPECT_EQ(c.string, settings.readEntry("g", "k", "default"));
        EXPECT_EQ(c.warning, warnings().join('|'));
        EXPECT_EQ(c.list, settings.readListEntry("g", "k", {"default"}));
        EXPECT_EQ(c.listWarning, warnings().join('|'));
    }
}

TEST_F(SettingsEntries, AnUnknownEscapeIsNamedWithItsCode)
{
    const QPair<QString, QString> cases[] = {
        {R"("a\x")", "Torvix::Settings: unknown quoted character 'x' (0x78) in "},
        {R"("a\)" + QString(QChar(0xe4)) + '"',
         QString("Torvix::Settings: unknown quoted character '\u00e4' (0xe4) in ")},
        {R"("a\)" + QString(QChar(0x20ac)) + '"',
         "Torvix::Settings: unknown quoted character with hex code 0x20ac in "},
    };
    for (const auto& c : cases) {
        settings.writeRawEntry("g", "k", c.first);
        EXPECT_EQ("default", settings.readEntry("g", "k", "default"));
        EXPECT_EQ(QStringList("default"), settings.readListEntry("g", "k", {"default"}));
        EXPECT_EQ(QStringList({c.second + file, c.second + file}), warnings());
    }
}

TEST_F(SettingsEntries, NumbersAreReadUnquotedOnly)
{
    struct
    {
        const char* raw;
        int number;
        double real;
    } const cases[] = {
        {" 12 ", 12, 12},
        {"-7", -7, -7},
        {"1.5", 99, 1.5},
        {"1e3", 99, 1000},
        {"\"12\"", 99, 99},
        {"", 99, 99},
        {"12 apples", 99, 99},
        {"0x10", 99, 99},
        {"012", 12, 12},
        {"1,5", 99, 99},
        {"2147483648", 99, 2147483648.0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.raw);
        settings.writeRawEntry("g", "k", c.raw);
        EXPECT_EQ(c.number, settings.readNumEntry("g", "k", 99));
        EXPECT_EQ(c.real, settings.readDoubleEntry("g", "k", 99));
    }
    EXPECT_EQ(99, settings.readNumEntry("g", "missing", 99));
    EXPECT_EQ(99, settings.readDoubleEntry("missing", "k", 99));
    EXPECT_EQ(QStringList(), warnings());
}

TEST_F(SettingsEntries, BooleansMayBeQuotedNumbersOrWords)
{
    const QPair<const char*, int> cases[] = {
        {"1", 1},    {"0", 0},     {" -3 ", 1},     {"\"0\"", 0},      {"\"1\"", 1}, {"\"1", 1},
        {"true", 1}, {"FALSE", 0}, {"\"True\"", 1}, {"fAlSe\"", 0},    {"yes", -1},  {"\"yes\"", -1},
        {"", -1},    {"\"", -1},   {"1.0", -1},     {"\"\"1\"\"", -1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.first);
        settings.writeRawEntry("g", "k", c.first);
        EXPECT_EQ(c.second < 0 || c.second == 1, settings.readBoolEntry("g", "k", true));
        EXPECT_EQ(c.second == 1, settings.readBoolEntry("g", "k", false));
    }
    EXPECT_TRUE(settings.readBoolEntry("g", "missing", true));
    EXPECT_EQ(QStringList(), warnings());
}

TEST_F(SettingsEntries, KeysAreNormalizedByEveryOperation)
{
    const QPair<const char*, const char*> cases[] = {
        {"a//b/", "a/b"}, {"/a/b", "a/b"},   {"x=y", "x_y"}, {"//a//", "/a/"},
        {"/", ""},        {"a///b", "a//b"}, {"==", "__"},   {"a b", "a b"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.first);
        Settings store(directory.path() + "/missing/never");
        store.writeEntry("g", c.first, 1);
        // The normal form as it stands in the map is seen through the list of entries below nothing.
        const QStringList all = store.entryList("g", "") + store.subkeyList("g", "");
        EXPECT_EQ(1, all.size());
        EXPECT_EQ(QString(c.second).section('/', 0, 0), all.value(0));
        EXPECT_EQ(1, store.readNumEntry("g", c.first, 0));
        store.removeEntry("g", c.first);
        EXPECT_EQ(QStringList(), store.entryList("g", "") + store.subkeyList("g", ""));
        QDir(directory.path()).mkdir("missing");
    }
}

TEST_F(SettingsEntries, KeysFormATree)
{
    for (const char* key : {"a/b/c", "a/b/d", "a/b-x/y", "a/e", "a/b", "ab/c", "top", "a//z"})
        settings.writeEntry("g", key, 1);
    EXPECT_EQ(QStringList({"b-x", "b"}), settings.subkeyList("g", "a"));
    EXPECT_EQ(QStringList({"b", "e", "z"}), settings.entryList("g", "/a/"));
    EXPECT_EQ(QStringList({"a", "ab"}), settings.subkeyList("g", ""));
    EXPECT_EQ(QStringList({"top"}), settings.entryList("g", ""));
    EXPECT_EQ(QStringList({"c", "d"}), settings.entryList("g", "a/b"));
    EXPECT_EQ(QStringList(), settings.subkeyList("missing", "a") + settings.entryList("missing", "a"));
    EXPECT_FALSE(settings.hasGroup("missing"));
}

TEST_F(SettingsEntries, VariablesAreExpandedOnlyWhenAsked)
{
    qputenv("TORVIX_T_ONE", "1");
    qputenv("TORVIX_T_WORD", "w\xc3\xb6rd");
    qputenv("TORVIX_T_OUTER", "<$(TORVIX_T_WORD)>$(TORVIX_T_WORD)");
    qputenv("TORVIX_T_EMPTY", "");
    qunsetenv("TORVIX_T_UNSET");
    std::setlocale(LC_ALL, "C.UTF-8");
    const QPair<QString, QString> cases[] = {
        {"$(TORVIX_T_WORD)/x", "w\u00f6rd/x"},
        {"$$HOME", "$HOME"},
        {"$$$$", "$$"},
        {"$$(TORVIX_T_WORD)", "$(TORVIX_T_WORD)"},
        {"$(TORVIX_T_UNSET) $(TORVIX_T_WORD)", "$(TORVIX_T_UNSET) w\u00f6rd"},
        {"$(TORVIX_T_EMPTY)", "$(TORVIX_T_EMPTY)"},
        {"$(HOME $(TORVIX_T_WORD", "$(HOME $(TORVIX_T_WORD"},
        {"$$ $(open $$", "$ $(open $$"},
        {"$HOME $", "$HOME $"},
        {"$()", "$()"},
        {"$($(TORVIX_T_WORD))", "$(w\u00f6rd)"},
        // The search goes on two characters behind the dollar sign, in the value or behind a short one.
        {"$(TORVIX_T_OUTER)", "<$(TORVIX_T_WORD)>w\u00f6rd"},
        {"$(TORVIX_T_ONE)$(TORVIX_T_WORD)", "1$(TORVIX_T_WORD)"},
        {"$(TORVIX_T_ONE)-$(TORVIX_T_WORD)", "1-w\u00f6rd"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(qPrintable(c.first));
        settings.writeEntry("g", "k", c.first);
        settings.setExpandVariables(true);
        EXPECT_EQ(c.second, settings.readEntry("g", "k"));
        EXPECT_EQ(QStringList(c.second), settings.readListEntry("g", "k"));
        EXPECT_EQ("$(HOME)", settings.readEntry("g", "missing", "$(HOME)"));
        settings.setExpandVariables(false);
        EXPECT_EQ(c.first, settings.readEntry("g", "k"));
    }
}

TEST_F(SettingsEntries, AVariableThatHoldsItselfIsNotExpandedForEver)
{
    qputenv("TORVIX_T_SELF", QByteArray(1000, '.') + "$(TORVIX_T_SELF)");
    settings.writeEntry("g", "k", "$(TORVIX_T_SELF)");
    settings.setExpandVariables(true);
    EXPECT_LT(settings.readEntry("g", "k").size(), 2 << 20);
    EXPECT_EQ(QStringList("Torvix::Settings: variables expand to too long a text in " + file), warnings());
}

} // namespace
