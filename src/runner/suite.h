#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

namespace Torvix {

/** What a suite.ini says, with the defaults of what it leaves out. */
struct SuiteSettings
{
    /** Folders in which startApplication() looks for programs before PATH; relative to the suite. */
    QStringList applicationFolders;
    /** Added to the environment of every application, "NAME=value". */
    QStringList environment;
    int caseTimeoutSecs = 300;
    int startTimeoutSecs = 20;
    /** How long waitForObject() and its like wait by themselves. */
    int waitTimeoutMs = 20'000;
    /** Give each test case a HOME and XDG folders of its own. */
    bool ownHome = false;
};

/** A folder `tst_*` with a `test.js`. */
struct TestCase
{
    QString name;
    QString folder;
    QString script;
    QStringList tags;
    /** Of its test.ini; 0: that of the suite. */
    int timeoutSecs = 0;
};

/**
 * A suite on disk:
 *
 *     suite_shop/
 *       suite.ini              settings; may be missing
 *       shared/scripts/        modules that every case imports, names.js first of all
 *       shared/testdata/
 *       tst_basket/
 *         test.js              the test: function main() { ... }
 *         test.ini             tags and timeout; may be missing
 *         testdata/
 */
struct Suite
{
    QString name;
    QString folder;
    SuiteSettings settings;
    QVector<TestCase> cases;
    /** Folders tst_* without a test.js, which are no test cases but perhaps were meant to be. */
    QStringList leftOut;

    QString scriptFolder() const { return folder + QStringLiteral("/shared/scripts"); }
};

/**
 * Reads the suite of a path: a suite's folder, or the folder or script of a test case in it, which
 * is then the only case. False with one line of what is wrong and how to mend it.
 */
bool loadSuite(const QString& path, Suite* suite, QString* error);

} // namespace Torvix
