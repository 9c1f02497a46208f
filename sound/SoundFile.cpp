#include "sound/SoundFile.h"

#include <samplerate.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace larkspan {

namespace {

constexpr sf_count_t mostSamples = sf_count_t{60} * 192000 * 2;

struct CloseSoundFile
{
    void operator()(SNDFILE *file) const { sf_close(file); }
};

// Mono, stereo or as many as it has: each channel of the result is its own, or the average of all.
std::vector<float> withChannels(const SampleBuffer &buffer, int channels)
{
    if (buffer.format.channels == channels) {
        return buffer.samples;
    }
    const auto own = static_cast<std::size_t>(buffer.format.channels);
    std::vector<float> samples;
    samples.reserve(buffer.frameCount() * static_cast<std::size_t>(channels));
    for (auto frame = buffer.samples.begin(); frame != buffer.samples.end();
         frame += static_cast<std::ptrdiff_t>(own)) {
        const float average =
            std::accumulate(frame, frame + static_cast<std::ptrdiff_t>(own), 0.0F) / static_cast<float>(own);
        samples.insert(samples.end(), static_cast<std::size_t>(channels), average);
    }
    return samples;
}

} // namespace

SampleBufferPtr readSoundFile(const std::filesystem::path &path)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) { // opening a pipe would wait for its writer
        return nullptr;
    }
    SF_INFO info{};
    const std::unique_ptr<SNDFILE, CloseSoundFile> file(sf_open(path.c_str(), SFM_READ, &info));
    if (!file || info.frames <= 0 || info.channels <= 0 || info.samplerate <= 0 ||
        info.frames > mostSamples / info.channels) {
        return nullptr;
    }
    auto buffer = std::make_shared<SampleBuffer>();
    buffer->format = {.sampleRate = info.samplerate, .channels = info.channels};
    buffer->samples.resize(static_cast<std::size_t>(info.frames * info.channels));
    if (sf_readf_float(file.get(), buffer->samples.data(), info.frames) != info.frames ||
        !std::ranges::all_of(buffer->samples, [](float sample) { return std::isfinite(sample); })) {
        return nullptr;
    }
    return buffer;
}

SampleBufferPtr converted(const SampleBufferPtr &buffer, AudioFormat format)
{
    if (buffer->format == format) {
        return buffer;
    }
    auto result = std::make_shared<SampleBuffer>();
    result->format = format;
    result->samples = withChannels(*buffer, format.channels);
    if (buffer->format.sampleRate == format.sampleRate || result->samples.empty()) {
        return result;
    }
    const double ratio = static_cast<double>(format.sampleRate) / buffer->format.sampleRate;
    if (src_is_valid_ratio(ratio) == 0) {
        return nullptr;
    }
    const auto input = std::exchange(result->samples, {});
    const auto frames = buffer->frameCount();
    result->samples.resize((static_cast<std::size_t>(static_cast<double>(frames) * ratio) + 1) *
                           static_cast<std::size_t>(format.channels));
    SRC_DATA data{};
    data.data_in = input.data();
    data.input_frames = static_cast<long>(frames);
    data.data_out = result->samples.data();
    data.output_frames = static_cast<long>(result->frameCount());
    data.src_ratio = ratio;
    if (src_simple(&data, SRC_SINC_MEDIUM_QUALITY, format.channels) != 0) {
        return nullptr;
    }
    result->samples.resize(static_cast<std::size_t>(data.output_frames_gen) *
                           static_cast<std::size_t>(format.channels));
    return result;
}

} // namespace larkspan
