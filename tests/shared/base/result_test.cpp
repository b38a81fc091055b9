#include "shared/base/result.h"

#include "shared/base/sharedptr.h"

#include <gtest/gtest.h>

#include <memory>

namespace Torvix {

namespace {

struct Counted : Shared
{
    int number = 7;
};

struct CodedFailure : Failure
{
    int code = 0;
};

Result<int> half(int number)
{
    if (number % 2 != 0)
        return Failure{QStringLiteral("%1 is odd").arg(number)};
    return number / 2;
}

TEST(Result, HandsAValueOnUntilTheFirstFailure)
{
    EXPECT_EQ(3, *half(12).then(half));
    EXPECT_EQ("3 is odd", half(12).then(half).then(half).error());
    EXPECT_EQ("5 is odd", half(5).then(half).error());
    const Result<QString> text = half(8).then([](int number) { return QString::number(number); });
    EXPECT_EQ("4", *text);
    EXPECT_EQ(QString(), text.error());
}

TEST(Result, IsDoneOrNotWhateverItsValueAndText)
{
    EXPECT_TRUE(half(0));
    EXPECT_TRUE(Result<SharedPtr<Counted>>(nullptr));
    EXPECT_FALSE(Result<int>(Failure()));
    EXPECT_TRUE(Result<void>());
    EXPECT_TRUE(Result<void>(half(2)));
    const Result<void> failed = half(3);
    EXPECT_FALSE(failed);
    EXPECT_EQ("3 is odd", failed.error());
    EXPECT_EQ(0, half(3).orNothing());
}

TEST(Result, ReachesTheMembersOfTheValueAndOfWhatItPointsTo)
{
    EXPECT_EQ(3, Result<QString>(QStringLiteral("abc"))->size());
    EXPECT_EQ(7, Result<SharedPtr<Counted>>(new Counted)->number);
    Result<std::unique_ptr<int>> owned = std::make_unique<int>(5);
    const std::unique_ptr<int> taken = std::move(owned).orNothing();
    EXPECT_EQ(5, *taken);
    CodedFailure coded;
    coded.code = 4;
    EXPECT_EQ(4, (Result<QString, CodedFailure>(coded).failure().code));
}

} // namespace

} // namespace Torvix
