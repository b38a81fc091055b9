#include "shared/input/modifier.h"
#include "shared/input/mousebutton.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::Pair;

/** The list of a type as the script's global object walks it. */
template <class Type>
std::vector<std::pair<std::string, int>> constantsOf()
{
    std::vector<std::pair<std::string, int>> constants;
    for (const typename Type::Value* value = Type::values(); *value != -1; ++value)
        constants.emplace_back(Type::valueAsString(*value), *value);
    return constants;
}

TEST(InputConstants, AreListedInOrderWithTheirNames)
{
    EXPECT_THAT(constantsOf<Torvix::MouseButton>(),
                ElementsAre(Pair("None", 0), Pair("LeftButton", 1), Pair("MiddleButton", 2),
                            Pair("RightButton", 4), Pair("Wheel", 8), Pair("PrimaryButton", 16),
                            Pair("SecondaryButton", 32), Pair("XButton1", 64), Pair("XButton2", 128)));
    EXPECT_THAT(constantsOf<Torvix::Modifier>(),
                ElementsAre(Pair("None", 0), Pair("Control", 128), Pair("Shift", 256), Pair("Alt", 512),
                            Pair("Win", 1024), Pair("Command", 2048)));
}

TEST(InputConstants, AValueOutsideTheListHasNoName)
{
    for (int value : {-1, 3, 64 + 2, 256})
        EXPECT_EQ(nullptr, Torvix::MouseButton::valueAsString(Torvix::MouseButton::Value(value)));
    for (int value : {-1, 1, 128 + 256, 4096})
        EXPECT_EQ(nullptr, Torvix::Modifier::valueAsString(Torvix::Modifier::Value(value)));
}

} // namespace
