// A few shoots in a row in one process; bench/long_run does hundreds, and looks at memory as well.
#include <gtest/gtest.h>

#include "bench/LongRun.h"
#include "classify/vision/VisionClassifier.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::bench;

TEST(LongRun, ShootAfterShootLeavesNoThreadAndNoOpenFileBehind)
{
    LongRun run([] { return std::make_shared<const VisionClassifier>(nullptr); });
    Footprint first;
    while (run.shoots() < 10) {
        ASSERT_EQ(run.shoot(), "") << run.shoots();
        if (run.shoots() <= 3) {
            const Footprint now = Footprint::now();
            first = {.threads = std::max(first.threads, now.threads),
                     .openFiles = std::max(first.openFiles, now.openFiles)};
        }
    }
    // Threads of a pool end by themselves when there is no more work.
    EXPECT_TRUE(test::waitUntil([&] { return Footprint::now().threads <= first.threads; }))
        << Footprint::now().threads << " threads, " << first.threads << " at first";
    EXPECT_TRUE(test::waitUntil([&] { return Footprint::now().openFiles <= first.openFiles; }))
        << Footprint::now().openFiles << " open files, " << first.openFiles << " at first";
}
