#include "tests/sound/AllocationCount.h"

#include <new>

#include <gtest/gtest.h>

using namespace larkspan::test;

TEST(AllocationCount, CountsEveryFormOfNewAndFreesWhatItGave)
{
    EXPECT_EQ(allocationsDuring([] {
                  ::operator delete(::operator new(1));
                  ::operator delete[](::operator new[](1));
                  ::operator delete(::operator new(1, std::nothrow));
                  ::operator delete[](::operator new[](1, std::nothrow));
              }),
              4U);
}
