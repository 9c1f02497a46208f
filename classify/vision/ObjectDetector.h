#pragma once

#include <QtCore/QRectF>
#include <QtGui/QImage>

#include "classify/vision/InferenceSession.h"

namespace larkspan {

// One object that was found in a picture.
struct DetectedObject
{
    int kind = 0;            // index into the 80 kinds of the detector
    float confidence = 0.0f; // 0...1
    QRectF box;              // in shares of the picture, clipped to it; origin at the top left

    friend bool operator==(const DetectedObject &, const DetectedObject &) = default;
};

// Finds everyday objects and persons, and sums up what the network saw.
class ObjectDetector
{
public:
    static constexpr int kindCount = 80;
    static constexpr int featureCount = 2960;
    // Objects below this confidence are not looked for.
    static constexpr float minConfidence = 0.1f;

    struct Result
    {
        std::vector<DetectedObject> objects; // by kind, then by confidence, the surest first
        // Means over the picture of the widest layers of the network's last five blocks (384, 528, 528, 720, 720), then
        // the highest probability of each kind (80).
        std::vector<float> features;
    };

    [[nodiscard]] static tl::expected<ObjectDetector, ModelError> load(const std::filesystem::path &file);

    // Nothing if the engine fails. Any thread.
    [[nodiscard]] std::optional<Result> detect(const QImage &image) const;

private:
    explicit ObjectDetector(InferenceSession session) : m_session(std::move(session)) {}

    InferenceSession m_session;
};

} // namespace larkspan
