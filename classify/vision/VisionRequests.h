#pragma once

#include <optional>
#include <span>
#include <vector>

#include <QtCore/QRectF>
#include <QtCore/QString>
#include <QtGui/QImage>

#include "core/clips/FeaturePrint.h"

namespace larkspan {

// One identifier of the taxonomy that a frame shows, and how surely.
struct ClassificationObservation
{
    QString identifier;
    float confidence = 0.0f; // 0...1
};

// One person.
struct HumanObservation
{
    QRectF boundingBox;      // in shares of the frame
    float confidence = 0.0f; // 0...1
};

// The findings of the five requests in one frame.
struct FrameObservations
{
    std::vector<ClassificationObservation> classifications;
    FeaturePrintPtr featurePrint; // none if the request gave no result
    std::vector<HumanObservation> humans;
    int bodyPoses = 0;
    int faces = 0;
};

// The source of the local tier's evidence. Called from several threads at once.
class VisionRequests
{
public:
    virtual ~VisionRequests() = default;

    // All requests on the frames of one clip: for each frame its observations, or none if any of its requests failed.
    // The frames of a clip bear on one another: an answer may depend on all of them.
    [[nodiscard]] virtual std::vector<std::optional<FrameObservations>> perform(
        std::span<const QImage> frames) const = 0;
    // Every identifier that a classification can carry, in any order.
    [[nodiscard]] virtual std::vector<QString> supportedIdentifiers() const = 0;
};

} // namespace larkspan
