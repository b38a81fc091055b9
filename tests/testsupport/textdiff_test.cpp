#include "testsupport/verification/textdiff.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace {

using Torvix::textDifference;

TEST(TextDifference, ShowsWhatDiffersWithItsSurroundings)
{
    EXPECT_EQ("", textDifference("a\nb", "a\nb"));
    EXPECT_EQ("- 2 items\n+ 3 items", textDifference("2 items", "3 items"));
    EXPECT_EQ("@@ line 3 @@\n  3\n  4\n- 5\n+ five\n+ five and a half\n  6\n  7",
              textDifference("1\n2\n3\n4\n5\n6\n7\n8\n9", "1\n2\n3\n4\nfive\nfive and a half\n6\n7\n8\n9"));
    EXPECT_EQ("- 1\n  2\n@@ line 8 @@\n  8\n+ 9",
              textDifference("1\n2\n3\n4\n5\n6\n7\n8", "2\n3\n4\n5\n6\n7\n8\n9", 1));
}

/** Both texts can be rebuilt from a difference that leaves nothing out. */
TEST(TextDifference, IsTrueForAnyTexts)
{
    QRandomGenerator random(20240601);
    for (int round = 0; round < 300; ++round) {
        QStringList expected;
        QStringList actual;
        for (int i = random.bounded(12); i > 0; --i)
            expected += QString(QChar('a' + random.bounded(4)));
        for (int i = random.bounded(12); i > 0; --i)
            actual += QString(QChar('a' + random.bounded(4)));
        if (expected == actual)
            continue;
        QStringList fromExpected;
        QStringList fromActual;
        for (const QString& line : textDifference(expected, actual, 100).split('\n')) {
            if (line[0] != '+')
                fromExpected += line.mid(2);
            if (line[0] != '-')
                fromActual += line.mid(2);
        }
        ASSERT_EQ(expected, fromExpected);
        ASSERT_EQ(actual, fromActual);
    }
}

TEST(TextDifference, OfLongTextsWithNothingInCommonEnds)
{
    QStringList expected;
    QStringList actual;
    for (int i = 0; i < 20'000; ++i) {
        expected += QString::number(i);
        actual += QString::number(-i - 1);
    }
    EXPECT_EQ(40'000, textDifference(expected, actual).count('\n') + 1);
}

} // namespace
