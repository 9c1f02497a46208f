#include "classify/vision/InferenceSession.h"

#include <array>

// Its functions come from a library that is loaded, not linked.
#define ORT_API_MANUAL_INIT
#include <onnxruntime_cxx_api.h>

#include "classify/vision/InferenceEngine.h"
#include "classify/vision/ModelFile.h"
#include "classify/vision/PictureTensor.h"

namespace larkspan {

namespace {

constexpr const char *inputName = "image";

// Loads the engine at the first call, before which nothing of it may be used. It wants one environment for the process.
const tl::expected<Ort::Env, ModelError> &environment()
{
    static const tl::expected<Ort::Env, ModelError> instance =
        loadInferenceEngine(shippedInferenceEngine()).map([](const OrtApi *api) {
            Ort::InitApi(api);
            return Ort::Env(ORT_LOGGING_LEVEL_FATAL, "larkspan");
        });
    return instance;
}

Ort::SessionOptions sessionOptions()
{
    Ort::SessionOptions options;
    // Clips are worked on in parallel, so a network of its own threads would only get in the way.
    options.SetIntraOpNumThreads(1);
    options.SetInterOpNumThreads(1);
    options.SetExecutionMode(ORT_SEQUENTIAL);
    options.SetGraphOptimizationLevel(ORT_ENABLE_ALL);
    return options;
}

// Returns the fault in the session's inputs and outputs, or an empty text.
std::string mismatch(const Ort::Session &session, std::span<const InferenceSession::Expected> outputs)
{
    const Ort::AllocatorWithDefaultOptions allocator;
    if (session.GetInputCount() != 1 ||
        session.GetInputNameAllocated(0, allocator).get() != std::string_view(inputName)) {
        return "it does not take one picture";
    }
    for (const auto &expected : outputs) {
        bool found = false;
        for (std::size_t i = 0; i < session.GetOutputCount() && !found; ++i) {
            if (session.GetOutputNameAllocated(i, allocator).get() != expected.name) {
                continue;
            }
            const auto type = session.GetOutputTypeInfo(i);
            if (type.GetONNXType() != ONNX_TYPE_TENSOR) {
                continue; // asking it for a shape would crash
            }
            const auto tensor = type.GetTensorTypeAndShapeInfo();
            const auto shape = tensor.GetShape();
            found = tensor.GetElementType() == ONNX_TENSOR_ELEMENT_DATA_TYPE_FLOAT &&
                    (shape.size() == 2 || shape.size() == 4) && shape[1] == expected.channels;
        }
        if (!found) {
            return "it has no output \"" + std::string(expected.name) + "\" of the right shape";
        }
    }
    return {};
}

tl::unexpected<ModelError> failure(ModelError error)
{
    return tl::unexpected(std::move(error));
}

// Nothing if the output isn't one picture's with so many channels: a model may declare another shape than it yields.
std::optional<ModelOutput> copyOut(const Ort::Value &value, int channels)
{
    const auto info = value.GetTensorTypeAndShapeInfo();
    auto shape = info.GetShape();
    if (shape.size() == 2) {
        shape.insert(shape.end(), {1, 1});
    }
    const auto isSide = [](std::int64_t side) { return side > 0 && side <= std::numeric_limits<int>::max(); };
    if (shape.size() != 4 || shape[0] != 1 || shape[1] != channels || !isSide(shape[2]) || !isSide(shape[3])) {
        return std::nullopt;
    }
    ModelOutput output{channels, static_cast<int>(shape[2]), static_cast<int>(shape[3]), {}};
    const auto *data = value.GetTensorData<float>();
    output.values.assign(data, data + info.GetElementCount());
    return output;
}

} // namespace

struct InferenceSession::Engine
{
    Ort::Session session;
    std::vector<std::string> outputs;
    std::vector<int> channels; // of each
};

InferenceSession::InferenceSession(std::unique_ptr<Engine> engine) : m_engine(std::move(engine)) {}

InferenceSession::InferenceSession(InferenceSession &&) noexcept = default;
InferenceSession &InferenceSession::operator=(InferenceSession &&) noexcept = default;
InferenceSession::~InferenceSession() = default;

tl::expected<InferenceSession, ModelError> InferenceSession::load(const std::filesystem::path &file,
                                                                  std::span<const Expected> outputs)
{
    const auto bytes = readModelFile(file);
    if (!bytes) {
        return failure(ModelError{ModelError::Reason::Missing, file, "there is no such file, or it can't be read"});
    }
    try {
        const auto &engineEnvironment = environment();
        if (!engineEnvironment) {
            return failure(engineEnvironment.error());
        }
        Ort::Session session(*engineEnvironment, bytes->data(), bytes->size(), sessionOptions());
        if (auto problem = mismatch(session, outputs); !problem.empty()) {
            return failure(ModelError{ModelError::Reason::OtherModel, file, std::move(problem)});
        }
        auto engine = std::make_unique<Engine>(Engine{std::move(session), {}, {}});
        for (const auto &expected : outputs) {
            engine->outputs.emplace_back(expected.name);
            engine->channels.push_back(expected.channels);
        }
        return InferenceSession(std::move(engine));
    } catch (const Ort::Exception &error) {
        return failure(ModelError{ModelError::Reason::Broken, file, error.what()});
    }
}

std::optional<std::vector<ModelOutput>> InferenceSession::run(const PictureTensor &picture) const
{
    std::vector<const char *> names;
    for (const auto &name : m_engine->outputs) {
        names.push_back(name.c_str());
    }
    try {
        const std::array<std::int64_t, 4> shape{1, 3, picture.height(), picture.width()};
        const auto memory = Ort::MemoryInfo::CreateCpu(OrtArenaAllocator, OrtMemTypeDefault);
        // The engine's interface knows no constant input, but does not write to it.
        auto *values = const_cast<float *>(picture.values().data());
        const auto input =
            Ort::Value::CreateTensor<float>(memory, values, picture.values().size(), shape.data(), shape.size());
        const auto results =
            m_engine->session.Run(Ort::RunOptions{nullptr}, &inputName, &input, 1, names.data(), names.size());
        std::vector<ModelOutput> outputs;
        outputs.reserve(results.size());
        for (std::size_t i = 0; i < results.size(); ++i) {
            auto output = copyOut(results[i], m_engine->channels[i]);
            if (!output) {
                return std::nullopt;
            }
            outputs.push_back(std::move(*output));
        }
        return outputs;
    } catch (const Ort::Exception &) {
        return std::nullopt;
    }
}

} // namespace larkspan
