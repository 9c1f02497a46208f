#include <fstream>

#include <gmock/gmock.h>

#include "classify/vision/InferenceSession.h"
#include "classify/vision/PictureTensor.h"

using namespace larkspan;

namespace {

// Numbers that the source graph gave, see reference_outputs.py.
std::vector<float> reference(const std::string &name)
{
    const auto file = std::filesystem::path(LARKSPAN_REFERENCE) / (name + ".f32");
    std::vector<float> values(std::filesystem::file_size(file) / sizeof(float));
    std::ifstream stream(file, std::ios::binary);
    stream.read(reinterpret_cast<char *>(values.data()), static_cast<std::streamsize>(values.size() * sizeof(float)));
    return values;
}

// A model's answers to the reference's picture, and the reference's own, output by output.
struct Answers
{
    std::vector<float> actual;
    std::vector<float> expected;
};

std::vector<Answers> answersOf(const std::string &model, QSize size,
                               std::span<const InferenceSession::Expected> outputs)
{
    const auto session = InferenceSession::load(std::filesystem::path(LARKSPAN_MODELS) / (model + ".onnx"), outputs);
    if (!session) {
        throw std::runtime_error(session.error().detail);
    }
    const auto actual = session->run(PictureTensor(size, reference(model + ".image"))).value();
    std::vector<Answers> answers;
    for (std::size_t i = 0; i < outputs.size(); ++i) {
        answers.push_back({actual.at(i).values, reference(model + "." + std::string(outputs[i].name))});
        if (answers.back().actual.size() != answers.back().expected.size()) {
            throw std::runtime_error("another number of values");
        }
    }
    return answers;
}

// The largest difference between what the imported model answers and what its source answers, over the size of the
// answers.
double worstError(const std::string &model, QSize size, std::span<const InferenceSession::Expected> outputs)
{
    double worst = 0.0;
    for (const auto &[actual, expected] : answersOf(model, size, outputs)) {
        double scale = 1.0;
        for (const float value : expected) {
            scale = std::max<double>(scale, std::abs(value));
        }
        for (std::size_t j = 0; j < expected.size(); ++j) {
            worst = std::max(worst, std::abs(static_cast<double>(actual[j]) - expected[j]) / scale);
        }
    }
    return worst;
}

// The root of the mean square of the differences, over that of the answers.
double typicalError(const std::string &model, QSize size, std::span<const InferenceSession::Expected> outputs)
{
    double differences = 0.0;
    double squares = 0.0;
    for (const auto &[actual, expected] : answersOf(model, size, outputs)) {
        for (std::size_t j = 0; j < expected.size(); ++j) {
            differences += std::pow(static_cast<double>(actual[j]) - expected[j], 2);
            squares += std::pow(static_cast<double>(expected[j]), 2);
        }
    }
    return std::sqrt(differences / squares);
}

constexpr double Rounding = 2e-5;
// The scene network counts in eight bits.
constexpr double EightBits = 0.12;

} // namespace

TEST(ImportedModels, ObjectsAnswersAsItsSourceDoes)
{
    constexpr std::array<InferenceSession::Expected, 3> outputs{{{"heat", 80}, {"reach", 4}, {"pooled", 2960}}};
    EXPECT_LT(worstError("objects", {224, 160}, outputs), Rounding);
}

TEST(ImportedModels, PoseAnswersAsItsSourceDoes)
{
    constexpr std::array<InferenceSession::Expected, 4> outputs{
        {{"center", 1}, {"joints", 17}, {"regress", 34}, {"offset", 34}}};
    EXPECT_LT(worstError("pose", {192, 192}, outputs), Rounding);
}

TEST(ImportedModels, FaceAnswersAsItsSourceDoes)
{
    constexpr std::array<InferenceSession::Expected, 4> outputs{
        {{"scores16", 2}, {"boxes16", 32}, {"scores32", 6}, {"boxes32", 96}}};
    EXPECT_LT(worstError("face", {288, 160}, outputs), Rounding);
}

TEST(ImportedModels, SceneAnswersAsItsSourceDoesButForEightBits)
{
    constexpr std::array<InferenceSession::Expected, 1> outputs{{{"pooled", 7520}}};
    EXPECT_LT(typicalError("scene", {224, 160}, outputs), EightBits);
}
