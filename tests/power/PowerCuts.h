#pragma once

#include <functional>
#include <iostream>
#include <set>

#include <gtest/gtest.h>

#include "tests/power/PowerCutDisk.h"

// Leaves the test, with the reason, where nothing can be mounted through FUSE.
#define REQUIRE_POWER_CUT_DISK()                                                                                       \
    if (const std::string whyNot = PowerCutDisk().whyNot(); !whyNot.empty()) {                                         \
        GTEST_SKIP() << whyNot;                                                                                        \
    }

namespace larkspan::test {

// Something that is done on a disk while its power goes.
struct PowerCutRun
{
    DiskContent before;
    PowerCutDisk::Claims claims = PowerCutDisk::Claims::rename;
    // Does it, in the disk's folder. isCut: whether the power has gone by now.
    std::function<void(const std::filesystem::path &disk, const std::function<bool()> &isCut)> act;
    // Looks at what may be on the disk when the power is back.
    std::function<void(const DiskContent &left)> check;
    int stride = 1; // 1 for every call
};

// Cuts the power in front of every call that the run makes, or as the stride says, one after the other, each time on a
// fresh disk, and checks all that each cut may leave; in the end also a cut behind the last call. Ends with the first
// failure. Returns how many cuts it made.
inline long cutPowerAtCalls(const PowerCutRun &run)
{
    long cuts = 0;
    for (long calls = 0;; calls += run.stride) {
        PowerCutDisk disk(run.before, run.claims);
        disk.cutAfter(calls);
        run.act(disk.path(), [&disk] { return disk.isCut(); });
        disk.unmount();
        std::set<DiskContent> seen; // much of it is the same
        for (const Survival survival : everySurvival) {
            constexpr unsigned chances = 3;
            for (unsigned seed = 0; seed < (survival == Survival::chance ? chances : 1); ++seed) {
                SCOPED_TRACE("cut after " + std::to_string(calls) + " calls, survival " +
                             std::to_string(static_cast<int>(survival)) + ", seed " + std::to_string(seed));
                const auto left = seen.insert(disk.left(survival, static_cast<unsigned>(calls) * chances + seed));
                if (left.second) {
                    run.check(*left.first);
                }
            }
        }
        ++cuts;
        if (!disk.isCut() || testing::Test::HasFailure()) {
            std::cout << cuts << " cuts\n";
            return cuts;
        }
    }
}

} // namespace larkspan::test
