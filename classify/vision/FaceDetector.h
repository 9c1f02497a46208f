#pragma once

#include <QtCore/QRectF>
#include <QtGui/QImage>

#include "classify/vision/InferenceSession.h"

namespace larkspan {

struct DetectedFace
{
    float confidence = 0.0f; // 0...1
    QRectF box;              // in shares of the picture, clipped to it; origin at the top left

    friend bool operator==(const DetectedFace &, const DetectedFace &) = default;
};

// Finds faces that look more or less into the camera.
class FaceDetector
{
public:
    [[nodiscard]] static tl::expected<FaceDetector, ModelError> load(const std::filesystem::path &file);

    // The surest first; none below minConfidence. Nothing if the engine fails. Any thread.
    [[nodiscard]] std::optional<std::vector<DetectedFace>> detect(const QImage &image, float minConfidence) const;

private:
    explicit FaceDetector(InferenceSession session) : m_session(std::move(session)) {}

    InferenceSession m_session;
};

} // namespace larkspan
