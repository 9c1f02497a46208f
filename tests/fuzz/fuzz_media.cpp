// fuzz_media KEEP SECONDS SEED FILE…: probes and samples damaged copies of real files, by hand and for as long as one
// likes. Each input is made from the seed and its number, so that a finding can be made again; an input that crashes,
// or runs on far past its limits, is kept in the folder KEEP. Prints what it did; fails if it kept anything.
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "classify/ClipProbe.h"
#include "classify/FrameSampler.h"

using namespace larkspan;

namespace {

using Random = std::mt19937_64;

constexpr MediaLimits limits{.time = std::chrono::milliseconds(1500), .bytes = 64 << 20};
constexpr unsigned patience = 20;            // seconds for one input
constexpr long mostMemory = 1'500L * 1'024L; // kilobytes that a child may come to hold

std::size_t below(Random &random, std::size_t limit)
{
    return limit == 0 ? 0 : static_cast<std::size_t>(random() % limit);
}

std::string content(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// Headers stand at the start or the end; damage there says more than in the pictures.
std::size_t place(Random &random, std::size_t size)
{
    const std::size_t edge = std::min<std::size_t>(size, 2048);
    switch (below(random, 3)) {
    case 0:
        return below(random, edge);
    case 1:
        return size - edge + below(random, edge);
    default:
        return below(random, size);
    }
}

void damage(Random &random, std::string &bytes)
{
    if (bytes.empty()) {
        return;
    }
    const std::size_t at = place(random, bytes.size());
    switch (below(random, 7)) {
    case 0:
        bytes[at] = static_cast<char>(bytes[at] ^ (1 << below(random, 8)));
        break;
    case 1:
        bytes[at] = static_cast<char>(random());
        break;
    case 2: { // a number that is often too large, too small or on an edge
        constexpr std::uint32_t numbers[] = {0, 1, 0x7fffffff, 0x80000000, 0xffffffff, 0xfffffff0, 0x10000, 0xffff};
        const std::uint32_t number = numbers[below(random, std::size(numbers))];
        for (std::size_t i = 0; i < 4 && at + i < bytes.size(); ++i) {
            bytes[at + i] = static_cast<char>(number >> (24 - 8 * i));
        }
        break;
    }
    case 3:
        bytes.erase(at, below(random, 64) + 1);
        break;
    case 4:
        bytes.insert(at, bytes.substr(place(random, bytes.size()), below(random, 256) + 1));
        break;
    case 5:
        if (below(random, 4) == 0) {
            bytes.resize(at);
        }
        break;
    default: { // one field in the place of another
        const std::string other = bytes.substr(place(random, bytes.size()), 4);
        bytes.replace(at, std::min(other.size(), bytes.size() - at), other);
        break;
    }
    }
}

// What the child does with an input; its death is the finding.
void tryInput(const std::filesystem::path &path)
{
    const ClipPtr clip = probeClipWithin(FileUrl(path), limits);
    const Frames frames = sampleFramesWithin(*clip, 4, 448, limits);
    for (const QImage &frame : frames) {
        if (frame.isNull() || std::max(frame.width(), frame.height()) > 448) {
            std::abort();
        }
    }
    if (!(clip->duration >= 0.0) || clip->frameDurationScale <= 0 || clip->naturalSize.width() < 0.0) {
        std::abort();
    }
    struct rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    if (usage.ru_maxrss > mostMemory) {
        std::abort();
    }
}

bool survives(const std::filesystem::path &path)
{
    const pid_t child = fork();
    if (child == 0) {
        alarm(patience);
        tryInput(path);
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 5) {
        std::cerr << "usage: fuzz_media KEEP SECONDS SEED FILE…\n";
        return 2;
    }
    const std::filesystem::path keep = argv[1];
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(std::atoi(argv[2]));
    const auto seed = static_cast<std::uint64_t>(std::atoll(argv[3]));
    const std::vector<std::filesystem::path> files(argv + 4, argv + argc);
    std::filesystem::create_directories(keep);
    std::uint64_t number = 0;
    int kept = 0;
    for (; std::chrono::steady_clock::now() < end; ++number) {
        Random random(seed * 1'000'003 + number);
        const auto &file = files[below(random, files.size())];
        std::string bytes = content(file);
        for (std::size_t i = below(random, 12) + 1; i > 0; --i) {
            damage(random, bytes);
        }
        const auto input = keep / ("current-" + std::to_string(getpid()) + file.extension().string());
        std::ofstream(input, std::ios::binary | std::ios::trunc) << bytes;
        if (!survives(input)) {
            ++kept;
            std::filesystem::copy_file(
                input, keep / (std::to_string(seed) + "-" + std::to_string(number) + file.extension().string()),
                std::filesystem::copy_options::overwrite_existing);
        }
        std::filesystem::remove(input);
    }
    std::cout << number << " inputs, " << kept << " kept\n";
    return kept == 0 ? 0 : 1;
}
