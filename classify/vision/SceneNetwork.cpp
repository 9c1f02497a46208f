#include "classify/vision/SceneNetwork.h"

#include <array>

#include "classify/vision/PictureTensor.h"

namespace larkspan {

namespace {

constexpr int longSide = 352; // pixels

constexpr std::array outputNames{InferenceSession::Expected{"pooled", SceneNetwork::featureCount}};

} // namespace

tl::expected<SceneNetwork, ModelError> SceneNetwork::load(const std::filesystem::path &file)
{
    return InferenceSession::load(file, outputNames).map([](InferenceSession &&session) {
        return SceneNetwork(std::move(session));
    });
}

std::optional<std::vector<float>> SceneNetwork::featuresOf(const QImage &image) const
{
    const PictureTensor picture(image, networkSize(image.size(), longSide), PictureTensor::Range::Bytes);
    auto outputs = m_session.run(picture);
    return outputs ? std::optional(std::move((*outputs)[0].values)) : std::nullopt;
}

} // namespace larkspan
