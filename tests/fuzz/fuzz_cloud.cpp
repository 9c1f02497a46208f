// fuzz_cloud KEEP SECONDS SEED: reads damaged replies of a cloud model and makes analyses of them, by hand and for as
// long as one likes. Each input is made from the seed and its number, so that a finding can be made again; an input
// that crashes or hangs is kept in the folder KEEP. Prints what it did; fails if it kept anything.
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>

#include <sys/mman.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include "classify/CloudVerdict.h"

using namespace larkspan;

namespace {

using Random = std::mt19937_64;

constexpr long patience = 20; // seconds for one batch
constexpr std::uint64_t batch = 1'000;

const std::string verdicts[] = {
    R"({"primary":"Kitchen","secondary":["Dining Room","Pool"],"person_visible":true,"note":"wide bright shot"})",
    "Sure!\n```json\n{\"primary\":\"Pool\"}\n```\nhope that helps",
    R"({"primary":"B\u00e4d\ud83d\ude00","secondary":[],"person_visible":false,"note":"\"\\\/\b\f\n\r\t"})",
    R"({"primary":["Pool"],"secondary":{"a":[1,-2.5e300,null]},"person_visible":"true","note":7})",
    "} {",
    "no braces at all",
};

const std::string pieces[] = {"{",
                              "}",
                              "[",
                              "]",
                              "\"",
                              ":",
                              ",",
                              "\\",
                              "\\u",
                              "null",
                              "true",
                              "1e999",
                              "-0",
                              "\xff",
                              "\xc3",
                              "\xf0\x9f\x98",
                              "\xed\xa0\x80",
                              "\xef\xbb\xbf",
                              std::string(1, '\0'),
                              "\"text\"",
                              "\"content\"",
                              "\"primary\"",
                              "{\"text\":",
                              "\\ud800",
                              "```"};

std::size_t below(Random &random, std::size_t limit)
{
    return limit == 0 ? 0 : static_cast<std::size_t>(random() % limit);
}

void damage(Random &random, std::string &bytes)
{
    const std::size_t at = below(random, bytes.size() + 1);
    const std::string &piece = pieces[below(random, std::size(pieces))];
    switch (below(random, 8)) {
    case 0:
        bytes.insert(at, piece);
        break;
    case 1: { // as deep as one likes
        const std::size_t depth = std::size_t(1) << below(random, 14);
        std::string nest;
        for (std::size_t i = 0; i < depth; ++i) {
            nest += piece;
        }
        bytes.insert(at, nest);
        break;
    }
    case 2:
        bytes.erase(at, below(random, 16) + 1);
        break;
    case 3:
        bytes.insert(at, bytes.substr(below(random, bytes.size() + 1), below(random, 128) + 1));
        break;
    case 4:
        if (below(random, 4) == 0) {
            bytes.resize(at);
        }
        break;
    case 5:
        bytes.insert(at, verdicts[below(random, std::size(verdicts))]);
        break;
    default:
        if (at < bytes.size()) {
            bytes[at] = below(random, 2) == 0 ? static_cast<char>(random())
                                              : static_cast<char>(bytes[at] ^ (1 << below(random, 8)));
        }
        break;
    }
}

std::string makeInput(std::uint64_t seed, std::uint64_t number)
{
    Random random(seed * 1'000'003 + number);
    std::string text = verdicts[below(random, std::size(verdicts))];
    const bool damagesText = below(random, 2) == 0;
    for (std::size_t i = damagesText ? below(random, 8) + 1 : 0; i > 0; --i) {
        damage(random, text);
    }
    const QJsonObject block{{QStringLiteral("type"), QStringLiteral("text")},
                            {QStringLiteral("text"), QString::fromUtf8(text)}};
    std::string reply = QJsonDocument(QJsonObject{{QStringLiteral("id"), QStringLiteral("msg")},
                                                  {QStringLiteral("content"), QJsonArray{block}}})
                            .toJson(QJsonDocument::Compact)
                            .toStdString();
    for (std::size_t i = damagesText ? below(random, 3) : below(random, 12) + 1; i > 0; --i) {
        damage(random, reply);
    }
    return reply;
}

// Every answer is a verdict or an error in words, the same each time.
void tryInput(const std::string &input)
{
    const auto check = [](const auto &answer, const auto &again) {
        if (answer != again || (!answer && answer.error().errorDescription().isEmpty())) {
            std::abort();
        }
    };
    const QByteArray body = QByteArray::fromStdString(input);
    check(parseReply(body), parseReply(body));
    const QString text = QString::fromUtf8(body);
    check(parseVerdict(text), parseVerdict(text));
}

// Tries inputs from the first on, and notes in current which it is at.
bool survives(std::uint64_t seed, std::uint64_t first, std::uint64_t &current)
{
    const pid_t child = fork();
    if (child == 0) {
        // Of the processor's time: how busy the machine is with other things says nothing of an input.
        const itimerval limit{.it_interval = {}, .it_value = {.tv_sec = patience, .tv_usec = 0}};
        setitimer(ITIMER_PROF, &limit, nullptr);
        for (current = first; current < first + batch; ++current) {
            tryInput(makeInput(seed, current));
        }
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4) {
        std::cerr << "usage: fuzz_cloud KEEP SECONDS SEED\n";
        return 2;
    }
    const std::filesystem::path keep = argv[1];
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(std::atoi(argv[2]));
    const auto seed = static_cast<std::uint64_t>(std::atoll(argv[3]));
    std::filesystem::create_directories(keep);
    void *shared = mmap(nullptr, sizeof(std::uint64_t), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED) {
        return 2;
    }
    auto &current = *static_cast<std::uint64_t *>(shared);
    std::uint64_t number = 0;
    int kept = 0;
    while (std::chrono::steady_clock::now() < end) {
        if (survives(seed, number, current)) {
            number += batch;
        } else {
            ++kept;
            const auto name = std::to_string(seed) + "-" + std::to_string(current) + ".json";
            std::ofstream(keep / name, std::ios::binary) << makeInput(seed, current);
            number = current + 1;
        }
    }
    std::cout << number << " inputs, " << kept << " kept\n";
    return kept == 0 ? 0 : 1;
}
