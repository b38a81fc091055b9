#include "shared/host/charset.h"
#include "shared/host/environment.h"
#include "shared/host/os.h"
#include "shared/host/realpath.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <clocale>
#include <cstdlib>
#include <gtest/gtest.h>

namespace {

using Torvix::Environment;
using Torvix::OS;
using Torvix::realPath;

/** Runs a case in the named locale and puts the former one back. */
class LocaleGuard
{
public:
    explicit LocaleGuard(const char* name) : m_former(std::setlocale(LC_ALL, nullptr))
    {
        std::setlocale(LC_ALL, name);
    }
    ~LocaleGuard() { std::setlocale(LC_ALL, m_former.c_str()); }

private:
    std::string m_former;
};

TEST(Charset, ConvertsAllOfATextOrNothingAndSaysWhy)
{
    struct
    {
        const char *text, *from, *to, *expected, *message;
    } const cases[] = {
        {"", "no such encoding", "UTF-8", "", ""},
        {"gr\xc3\xbc\xc3\x9f", "UTF-8", "ISO-8859-1", "gr\xfc\xdf", ""},
        {"gr\xfc\xdf", "ISO-8859-1", "UTF-8", "gr\xc3\xbc\xc3\x9f", ""},
        {"a", "UTF-8", "UTF-32LE", "a", ""}, // the zero bytes are looked at below
        {"ok \xe2\x82\xac", "UTF-8", "ISO-8859-1", "", "iconv: "},
        {"bad \xff byte", "UTF-8", "ISO-8859-1", "", "iconv: "},
        {"cut \xc3", "UTF-8", "ISO-8859-1", "", "iconv: "},
        {"a", "no such encoding", "UTF-8", "", "iconv_open: "},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        testing::internal::CaptureStderr();
        const std::string result = Torvix::mbs2mbs(c.text, c.from, c.to);
        const std::string message = testing::internal::GetCapturedStderr();
        EXPECT_STREQ(c.expected, result.c_str());
        EXPECT_EQ(0u, message.find(c.message));
        EXPECT_EQ(std::string(c.message).empty(), message.empty());
    }
    EXPECT_EQ(std::string("a\0\0\0", 4), Torvix::mbs2mbs("a", "UTF-8", "UTF-32LE"));
}

TEST(Charset, TheEmptyNameIsTheEncodingOfTheLocale)
{
    const std::string umlaut = "\xc3\xbc";
    {
        LocaleGuard utf8("C.UTF-8");
        EXPECT_EQ(umlaut, Torvix::utf8ToLocal8Bit(umlaut));
        EXPECT_EQ(umlaut, Torvix::local8BitToUTF8(umlaut));
    }
    LocaleGuard ascii("C");
    testing::internal::CaptureStderr();
    EXPECT_EQ("", Torvix::utf8ToLocal8Bit(umlaut));
    EXPECT_NE("", testing::internal::GetCapturedStderr());
}

TEST(Environment, SetsReadsAndRemovesVariables)
{
    LocaleGuard utf8("C.UTF-8");
    Environment::setVariable("TORVIX_T\xc3\x84ST", "one");
    Environment::setVariable("TORVIX_T\xc3\x84ST", "w\xc3\xb6rd");
    EXPECT_EQ("w\xc3\xb6rd", Environment::getVariable("TORVIX_T\xc3\x84ST"));
    EXPECT_STREQ("w\xc3\xb6rd", std::getenv("TORVIX_T\xc3\x84ST"));
    Environment::setVariable("TORVIX_T\xc3\x84ST", "");
    EXPECT_STREQ("", std::getenv("TORVIX_T\xc3\x84ST"));
    EXPECT_EQ("", Environment::getVariable("TORVIX_T\xc3\x84ST"));
    Environment::unsetVariable("TORVIX_T\xc3\x84ST");
    EXPECT_EQ(nullptr, std::getenv("TORVIX_T\xc3\x84ST"));
}

TEST(Environment, ANameThatIsNoneIsQuietlyIgnored)
{
    LocaleGuard ascii("C");
    testing::internal::CaptureStderr();
    Environment::setVariable("", "x");
    Environment::unsetVariable("");
    EXPECT_EQ("", Environment::getVariable(""));
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
    testing::internal::CaptureStderr();
    EXPECT_EQ("", Environment::getVariable("\xc3\x84"));
    EXPECT_NE("", testing::internal::GetCapturedStderr());
}

TEST(OS, HasTheNameThatUnameTells)
{
    EXPECT_EQ("Linux", OS::getName());
}

TEST(RealPath, ResolvesWhatExistsAndIsAbsolute)
{
    QTemporaryDir dir;
    const QString base = realPath(dir.path());
    ASSERT_TRUE(QDir(base).mkpath("target/\u00e4\u20ac"));
    ASSERT_TRUE(QFile::link(base + "/target", base + "/link"));
    struct
    {
        QString path, expected;
    } const cases[] = {
        {base + "/link/\u00e4\u20ac", base + "/target/\u00e4\u20ac"},
        {base + "//target/./../link/", base + "/target"},
        {base + "/missing/../target", base + "/missing/../target"},
        {base + "/link/missing", base + "/link/missing"},
        {"/", "/"},
        {"", ""},
        {base + "/" + QString(5000, 'x'), base + "/" + QString(5000, 'x')},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.expected, realPath(c.path)) << qPrintable(c.path);
}

TEST(RealPath, LeavesARelativePathAlone)
{
    QTemporaryDir dir;
    ASSERT_TRUE(QDir::setCurrent(dir.path()));
    ASSERT_TRUE(QDir().mkpath("a/b"));
    ASSERT_TRUE(QFile::link("a", "link"));
    for (const char* path : {"a/b", "link", ".", "../x", "a//b/"})
        EXPECT_EQ(QString(path), realPath(path));
    ASSERT_TRUE(QDir::setCurrent("/"));
}

} // namespace
