// Inputs that once crashed a reader, hung it, filled the memory or got an unsound answer, and a few that lead far into
// each. They were found by the fuzzers.
#include <filesystem>

#include <gmock/gmock.h>
#include <sys/resource.h>

#include "tests/fuzz/FuzzTargets.h"
#include "tests/support/FfmpegMedia.h"

using namespace larkspan;
using testing::IsEmpty;
using testing::Not;

namespace {

struct FuzzedReader
{
    const char *name = ""; // of its folder of inputs
    void (*read)(fuzz::Input input) = nullptr;
};

class FuzzedInputs : public testing::TestWithParam<FuzzedReader>
{};

} // namespace

INSTANTIATE_TEST_SUITE_P(, FuzzedInputs,
                         testing::Values(FuzzedReader{"media", fuzz::readMedia},
                                         FuzzedReader{"projects", fuzz::readProject},
                                         FuzzedReader{"models", fuzz::readModel},
                                         FuzzedReader{"replies", fuzz::readCloudReply}),
                         [](const auto &reader) { return std::string(reader.param.name); });

TEST_P(FuzzedInputs, EachKeptInputIsAnsweredSoundlyWithinItsMeans)
{
    std::vector<std::filesystem::path> inputs;
    for (const auto &entry :
         std::filesystem::directory_iterator(std::filesystem::path(LARKSPAN_FUZZ_INPUTS) / GetParam().name)) {
        inputs.push_back(entry.path());
    }
    ASSERT_THAT(inputs, Not(IsEmpty()));
    for (const auto &input : inputs) {
        SCOPED_TRACE(input);
        GetParam().read(test::bytesOf(input));
        struct rusage usage = {};
        getrusage(RUSAGE_SELF, &usage);
        EXPECT_LT(usage.ru_maxrss, 1'000'000) << "kilobytes";
    }
}
