#include "runner/suite.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using namespace Torvix;

class Suites : public testing::Test
{
protected:
    void write(const QString& name, const QByteArray& text)
    {
        QDir(m_folder.path()).mkpath(QFileInfo(name).path());
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    QString path(const QString& name) const { return QDir(m_folder.path()).canonicalPath() + '/' + name; }

    /** The error, with the temporary folder taken out; empty when it loads. */
    std::string load(const QString& name)
    {
        m_suite = Suite();
        QString error;
        const bool loaded = loadSuite(path(name), &m_suite, &error);
        EXPECT_EQ(loaded, error.isEmpty());
        return error.replace(path(QString()), QString()).toStdString();
    }

    QTemporaryDir m_folder;
    Suite m_suite;
};

TEST_F(Suites, HaveTheirCasesInOrderAndTheirSettings)
{
    write("suite_a/suite.ini",
          "[General]\nApplicationFolders = \"../bin\",\"/opt/b\"\nWaitTimeoutMs = 500\nOwnHome = true\n");
    write("suite_a/tst_b/test.js", "");
    write("suite_a/tst_a/test.js", "");
    write("suite_a/tst_a/test.ini", "[General]\nTags = \"smoke\",\"slow\"\nTimeoutSecs = 7\n");
    write("suite_a/tst_empty/other.js", "");
    write("suite_a/shared/scripts/names.js", "");
    EXPECT_EQ("", load("suite_a"));
    EXPECT_EQ("suite_a", m_suite.name);
    EXPECT_EQ(QStringList{path("suite_a/tst_empty")}, m_suite.leftOut);
    ASSERT_EQ(2, m_suite.cases.size());
    EXPECT_EQ("tst_a", m_suite.cases[0].name);
    EXPECT_EQ((QStringList{"smoke", "slow"}), m_suite.cases[0].tags);
    EXPECT_EQ(7, m_suite.cases[0].timeoutSecs);
    EXPECT_EQ(path("suite_a/tst_b/test.js"), m_suite.cases[1].script);
    EXPECT_EQ((QStringList{path("bin"), "/opt/b"}), m_suite.settings.applicationFolders);
    EXPECT_EQ(500, m_suite.settings.waitTimeoutMs);
    EXPECT_TRUE(m_suite.settings.ownHome);
    EXPECT_EQ(300, m_suite.settings.caseTimeoutSecs);

    for (const char* name : {"suite_a/tst_b", "suite_a/tst_b/test.js"}) {
        EXPECT_EQ("", load(name));
        ASSERT_EQ(1, m_suite.cases.size()) << name;
        EXPECT_EQ("suite_a", m_suite.name);
        EXPECT_EQ(500, m_suite.settings.waitTimeoutMs);
    }
}

TEST_F(Suites, FaultsAreToldInOneLine)
{
    write("s/tst_a/test.js", "");
    const std::vector<std::pair<const char*, const char*>> table = {
        {"# fine\n[Genral]\nOwnHome = true\n",
         "s/suite.ini:2: unknown group [Genral]; there is only [General]"},
        {"[General\nOwnHome = true\n", "s/suite.ini:1: unknown group [General; there is only [General]"},
        {"\nOwnHome = true\n", "s/suite.ini:2: 'OwnHome' stands before [General]"},
        {"[General]\n\nno sense\n",
         "s/suite.ini:3: 'no sense' is neither KEY = VALUE nor [General] nor a comment with #"},
        {"[General]\nOwnHome = true\nOwnHome = false\n",
         "s/suite.ini:3: 'OwnHome' is given again, first in line 2"},
        {"[General]\n[General]\n", "s/suite.ini:2: [General] is given again"},
        {"[General]\nOwnHom = true\n",
         "s/suite.ini:2: unknown key 'OwnHom' (did you mean 'OwnHome'?); known are ApplicationFolders, "
         "Environment, CaseTimeoutSecs, StartTimeoutSecs, WaitTimeoutMs, OwnHome"},
        {"[General]\nOwnHome = maybe\n", "s/suite.ini:2: 'OwnHome' has to be true or false"},
        {"[General]\nCaseTimeoutSecs = \"5\"\n",
         "s/suite.ini:2: 'CaseTimeoutSecs' has to be a number above 0, without quotes"},
        {"[General]\r\n# \xc3\xa4\r\nCaseTimeoutSecs = 0\r\n",
         "s/suite.ini:3: 'CaseTimeoutSecs' has to be a number above 0, without quotes"},
        {"[General]\nEnvironment = A=1\n",
         "s/suite.ini:2: 'Environment' has to be quoted strings NAME=value, separated by commas"},
        {"[General]\nEnvironment = \"A=1\" \"B=2\"\n",
         "s/suite.ini:2: 'Environment' has to be quoted strings NAME=value, separated by commas"},
        {"[General]\nApplicationFolders = \"a\\q\"\n",
         "s/suite.ini:2: 'ApplicationFolders' has to be quoted strings, separated by commas"},
        {"[General]\nApplicationFolders = \"a\",\n",
         "s/suite.ini:2: 'ApplicationFolders' has to be quoted strings, separated by commas"},
        {"[General]\nEnvironment = \"A=1\",\"B\"\n",
         "s/suite.ini:2: 'Environment' has to be quoted strings NAME=value, separated by commas"},
        {"[General]\nEnvironment = \"\xff\"\n", "s/suite.ini:2: is not UTF-8 text"},
    };
    for (const auto& [text, error] : table) {
        write("s/suite.ini", text);
        EXPECT_EQ(error, load("s"));
    }
    QFile::remove(path("s/suite.ini"));
    write("s/tst_a/test.ini", "[General]\nTags = smoke\n");
    EXPECT_EQ("s/tst_a/test.ini:2: 'Tags' has to be quoted strings, separated by commas", load("s"));
    EXPECT_EQ("nowhere: there is no such suite or test case", load("nowhere"));
    EXPECT_EQ("s/tst_b: there is no such suite or test case (did you mean 'tst_a'?)", load("s/tst_b"));
    write("empty/suite.ini", "");
    EXPECT_EQ("empty: there is no test case in it; one is a folder tst_NAME with a test.js", load("empty"));
}

} // namespace
