#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <tl/expected.hpp>

namespace larkspan {

class PictureTensor;

// Why a model could not be loaded. If it is for want of the inference engine, the file is the engine's library.
struct ModelError
{
    enum class Reason {
        Missing,    // no such file, or not to be read
        Broken,     // the engine can't read it: truncated, or no model at all
        OtherModel, // a model, but not the one that was asked for
    };

    Reason reason = Reason::Missing;
    std::filesystem::path file;
    std::string detail; // for whoever looks into it, in English

    friend bool operator==(const ModelError &, const ModelError &) = default;
};

// One plane stack that a model yields: channels by rows by columns, the last index moving fastest.
struct ModelOutput
{
    int channels = 0;
    int rows = 1;
    int columns = 1;
    std::vector<float> values;

    [[nodiscard]] std::span<const float> plane(int channel) const
    {
        const auto size = static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns);
        return std::span(values).subspan(static_cast<std::size_t>(channel) * size, size);
    }
};

// A neural network, loaded once and shared. Running it changes nothing, so any number of threads may run it at
// the same time; each run stays on its caller's thread and is bit for bit repeatable.
class InferenceSession
{
public:
    struct Expected
    {
        std::string_view name;
        int channels;
    };

    // The model must take one picture named "image" and have the outputs named, with as many channels.
    [[nodiscard]] static tl::expected<InferenceSession, ModelError> load(const std::filesystem::path &file,
                                                                         std::span<const Expected> outputs);

    InferenceSession(InferenceSession &&) noexcept;
    InferenceSession &operator=(InferenceSession &&) noexcept;
    ~InferenceSession();

    // The outputs in the order they were expected in, or nothing if the engine fails (it has no memory left) or an
    // output isn't as the model declared it.
    [[nodiscard]] std::optional<std::vector<ModelOutput>> run(const PictureTensor &picture) const;

private:
    struct Engine;
    explicit InferenceSession(std::unique_ptr<Engine> engine);

    std::unique_ptr<Engine> m_engine;
};

} // namespace larkspan
