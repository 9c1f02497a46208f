#include "tests/sound/AllocationCount.h"

#include <new>

#include <gtest/gtest.h>

using namespace larkspan::test;

TEST(AllocationCount, CountsEveryFormOfNewAndFreesWhatItGave)
{
    const auto before = allocationCount();
    ::operator delete(::operator new(1));
    ::operator delete[](::operator new[](1));
    ::operator delete(::operator new(1, std::nothrow));
    ::operator delete[](::operator new[](1, std::nothrow));
    EXPECT_EQ(allocationCount(), before + 4);
}
