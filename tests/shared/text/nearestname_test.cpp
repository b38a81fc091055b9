#include "shared/text/nearestname.h"

#include <gtest/gtest.h>

namespace {

using namespace Torvix;

TEST(EditDistance, CountsEachKindOfMistakeOnce)
{
    const struct
    {
        const char* from;
        const char* to;
        int distance;
    } cases[] = {
        {"", "", 0},       {"", "abc", 3},          {"abc", "abc", 0},   {"abc", "ab", 1}, {"abc", "xabc", 1},
        {"abc", "aXc", 1}, {"Return", "Retrun", 1}, {"abcd", "badc", 2}, {"ca", "abc", 3},
    };
    for (const auto& entry : cases) {
        EXPECT_EQ(entry.distance, editDistance(entry.from, entry.to)) << entry.from << " " << entry.to;
        EXPECT_EQ(entry.distance, editDistance(entry.to, entry.from)) << entry.to << " " << entry.from;
    }
}

TEST(NearestName, IsOneThatWasProbablyMeant)
{
    const QStringList known{"run", "inspect", "retries", "last-failed", "Return"};
    const struct
    {
        const char* given;
        const char* nearest;
    } cases[] = {
        {"rum", "run"},
        {"RETRYS", "retries"},
        {"last", "last-failed"},
        {"ru", ""},
        {"Retrun", "Return"},
        {"xyz", ""},
        {"", ""},
        {"re", ""},
    };
    for (const auto& entry : cases)
        EXPECT_EQ(entry.nearest, nearestName(entry.given, known)) << entry.given;
    EXPECT_EQ(" (did you mean 'run'?)", didYouMean("rum", known));
    EXPECT_EQ("", didYouMean("xyz", known));
    EXPECT_EQ("", nearestName(QString(100'000'000, 'x'), known)) << "and costs nothing";
}

} // namespace
