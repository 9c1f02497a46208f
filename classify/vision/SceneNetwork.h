#pragma once

#include <QtGui/QImage>

#include "classify/vision/InferenceSession.h"

namespace larkspan {

// A network trained to classify photographs of everything; its last layers tell a place.
class SceneNetwork
{
public:
    static constexpr int featureCount = 7520;

    [[nodiscard]] static tl::expected<SceneNetwork, ModelError> load(const std::filesystem::path &file);

    // The means over the picture of the layers that classify/vision/models/import_models.py chose. None if the
    // engine fails. Any thread.
    [[nodiscard]] std::optional<std::vector<float>> featuresOf(const QImage &image) const;

private:
    explicit SceneNetwork(InferenceSession session) : m_session(std::move(session)) {}

    InferenceSession m_session;
};

} // namespace larkspan
