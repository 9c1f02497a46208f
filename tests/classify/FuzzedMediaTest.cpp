#include <filesystem>

#include <gmock/gmock.h>
#include <sys/resource.h>

#include "classify/ClipProbe.h"
#include "classify/FrameSampler.h"

using namespace larkspan;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

// Damaged files that once crashed the reader, hung it or filled the memory. They were found by fuzz_media.
TEST(FuzzedMedia, EachKeptInputIsAnsweredWithinItsMeans)
{
    std::vector<std::filesystem::path> inputs;
    for (const auto &entry : std::filesystem::directory_iterator(LARKSPAN_FUZZ_INPUTS)) {
        inputs.push_back(entry.path());
    }
    ASSERT_THAT(inputs, Not(IsEmpty()));
    for (const auto &input : inputs) {
        const ClipPtr clip = probeClip(FileUrl(input));
        EXPECT_GE(clip->duration, 0.0) << input;
        EXPECT_THAT(sampleFrames(*clip, 4, 448), SizeIs(testing::Le(4u))) << input;
        struct rusage usage = {};
        getrusage(RUSAGE_SELF, &usage);
        EXPECT_LT(usage.ru_maxrss, 1'000'000) << "kilobytes after " << input;
    }
}
