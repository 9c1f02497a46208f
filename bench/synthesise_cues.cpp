// synthesise_cues: how long making each synthesised cue takes, the median of many times, and what playing a tick costs
// the thread that asks for it. Plays on OpenAL's null device unless ALSOFT_DRIVERS names another.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <vector>

#include "sound/SoundEngine.h"
#include "sound/Synthesis.h"
#include "tests/sound/AllocationCount.h"

#include <QtCore/QCoreApplication>

using namespace larkspan;

namespace {

template <typename Work>
double medianMilliseconds(int times, Work work)
{
    std::vector<double> taken;
    taken.reserve(static_cast<std::size_t>(times));
    for (int i = 0; i < times; ++i) {
        const auto start = std::chrono::steady_clock::now();
        work();
        taken.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    }
    std::ranges::nth_element(taken, taken.begin() + times / 2);
    return taken[static_cast<std::size_t>(times / 2)];
}

double synthesisMilliseconds(const SoundCue &cue)
{
    return medianMilliseconds(
        101, [&] { static_cast<void>(synthesize(std::get<SynthSpec>(cue.source), AudioEngine::sampleRate)); });
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    setenv("ALSOFT_DRIVERS", "null", 0); // before any other thread
    const double tick = synthesisMilliseconds(SoundCue::tick());
    const double chord = synthesisMilliseconds(SoundCue::resultsChord());

    const auto start = std::chrono::steady_clock::now();
    SoundEngine &engine = SoundEngine::shared();
    const std::chrono::duration<double, std::milli> construction = std::chrono::steady_clock::now() - start;

    constexpr int ticks = 1001;
    double allocations = 0;
    const double playTick = medianMilliseconds(ticks, [&] {
        allocations += static_cast<double>(test::allocationsDuring([&] { engine.playTick(SoundCue::tick()); }));
    });

    std::cout << "{\"milliseconds\": " << tick + chord << ", \"cues\": {\"tick\": " << tick
              << ", \"resultsChord\": " << chord << "}, \"engineMilliseconds\": " << construction.count()
              << ", \"playTickMilliseconds\": " << playTick << ", \"allocationsPerTick\": " << allocations / ticks
              << "}\n";
}
