#pragma once

#include <array>

#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtGui/QImage>

#include "classify/vision/InferenceSession.h"

namespace larkspan {

// The places of one body's joints, and how sure they are.
struct BodyPose
{
    // Nose, eyes, ears, shoulders, elbows, wrists, hips, knees, ankles; left before right.
    static constexpr int jointCount = 17;
    static constexpr std::size_t nose = 0;
    static constexpr std::size_t leftShoulder = 5;
    static constexpr std::size_t leftHip = 11;

    std::array<float, jointCount> confidence{}; // 0...1
    std::array<QPointF, jointCount> joints{};   // in shares of the picture, origin at the top left

    friend bool operator==(const BodyPose &, const BodyPose &) = default;
};

// Reads the joints of the body in the middle of a part of a picture. It always reads some: whether there is a body
// at all is for PersonEvidence to say.
class PoseDetector
{
public:
    [[nodiscard]] static tl::expected<PoseDetector, ModelError> load(const std::filesystem::path &file);

    // part: in shares of the picture; it is looked at as the square around it. Nothing if the engine fails. Any thread.
    [[nodiscard]] std::optional<BodyPose> read(const QImage &image, const QRectF &part) const;

private:
    explicit PoseDetector(InferenceSession session) : m_session(std::move(session)) {}

    InferenceSession m_session;
};

} // namespace larkspan
