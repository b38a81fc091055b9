#include "shared/base/sharedptr.h"

#include <gtest/gtest.h>

namespace {

using Torvix::Shared;
using Torvix::SharedPtr;

struct Counted : Shared
{
    explicit Counted(int* alive) : m_alive(alive) { ++*m_alive; }
    Counted(const Counted& other) : Shared(other), m_alive(other.m_alive) { ++*m_alive; }
    Counted& operator=(const Counted&) = default;
    ~Counted() override { --*m_alive; }
    int* m_alive;
};

struct Derived : Counted
{
    using Counted::Counted;
};

TEST(SharedPtr, DeletesWithTheLastReferenceAlsoThroughABase)
{
    int alive = 0;
    {
        SharedPtr<Derived> derived(new Derived(&alive));
        SharedPtr<Counted> base = derived;
        EXPECT_EQ(2, base->refCount());
        derived.reset();
        EXPECT_FALSE(derived);
        EXPECT_EQ(1, alive);
        EXPECT_TRUE(base.dynamicCast<Derived>());
        EXPECT_FALSE(SharedPtr<Counted>(new Counted(&alive)).dynamicCast<Derived>());
    }
    EXPECT_EQ(0, alive);
}

TEST(SharedPtr, ARawPointerFromAHeldObjectSharesItsCount)
{
    int alive = 0;
    SharedPtr<Counted> first(new Counted(&alive));
    SharedPtr<Counted> second(first.get());
    first = nullptr;
    EXPECT_EQ(1, alive);
    SharedPtr<Counted>& itself = second;
    second = itself;
    EXPECT_EQ(1, second->refCount());
    second = std::move(itself);
    EXPECT_EQ(1, alive);
}

TEST(SharedPtr, ACopiedObjectStartsWithACountOfItsOwn)
{
    int alive = 0;
    SharedPtr<Counted> original(new Counted(&alive));
    SharedPtr<Counted> copy(new Counted(*original));
    *copy = *original;
    EXPECT_EQ(1, copy->refCount());
    EXPECT_EQ(2, alive);
}

} // namespace
