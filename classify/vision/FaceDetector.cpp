#include "classify/vision/FaceDetector.h"

#include <algorithm>
#include <array>

#include "classify/vision/DetectorMath.h"
#include "classify/vision/PictureTensor.h"

namespace larkspan {

namespace {

constexpr int longSide = 448; // pixels
constexpr int valuesPerAnchor = 16;
constexpr double sameFace = 0.3;

constexpr std::array outputNames{
    InferenceSession::Expected{"scores16", 2},
    InferenceSession::Expected{"boxes16", 2 * valuesPerAnchor},
    InferenceSession::Expected{"scores32", 6},
    InferenceSession::Expected{"boxes32", 6 * valuesPerAnchor},
};

// The faces of one grid of anchors.
void collect(const ModelOutput &scores, const ModelOutput &boxes, int cellPixels, QSize size, float minConfidence,
             std::vector<DetectedFace> &faces)
{
    for (int anchor = 0; anchor < scores.channels; ++anchor) {
        const auto logits = scores.plane(anchor);
        for (int row = 0; row < scores.rows; ++row) {
            for (int column = 0; column < scores.columns; ++column) {
                const auto cell = static_cast<std::size_t>(row) * scores.columns + column;
                const float confidence = probabilityOf(logits[cell]);
                if (confidence < minConfidence) {
                    continue;
                }
                const auto value = [&](int i) { return boxes.plane(anchor * valuesPerAnchor + i)[cell]; };
                const double x = (column + 0.5) * cellPixels + value(0);
                const double y = (row + 0.5) * cellPixels + value(1);
                const double width = value(2);
                const double height = value(3);
                const QRectF box((x - width / 2.0) / size.width(), (y - height / 2.0) / size.height(),
                                 width / size.width(), height / size.height());
                if (const auto clipped = box & QRectF(0, 0, 1, 1); !clipped.isEmpty()) {
                    faces.push_back({confidence, clipped});
                }
            }
        }
    }
}

} // namespace

tl::expected<FaceDetector, ModelError> FaceDetector::load(const std::filesystem::path &file)
{
    return InferenceSession::load(file, outputNames).map([](InferenceSession &&session) {
        return FaceDetector(std::move(session));
    });
}

std::optional<std::vector<DetectedFace>> FaceDetector::detect(const QImage &image, float minConfidence) const
{
    const auto size = networkSize(image.size(), longSide);
    const auto outputs = m_session.run(PictureTensor(image, size, PictureTensor::Range::PlusMinus));
    if (!outputs) {
        return std::nullopt;
    }
    std::vector<DetectedFace> candidates;
    collect((*outputs)[0], (*outputs)[1], 16, size, minConfidence, candidates);
    collect((*outputs)[2], (*outputs)[3], 32, size, minConfidence, candidates);
    std::ranges::stable_sort(candidates, std::ranges::greater(), &DetectedFace::confidence);

    std::vector<DetectedFace> faces;
    for (const auto &candidate : candidates) {
        const auto same = [&](const DetectedFace &face) { return overlapOf(face.box, candidate.box) > sameFace; };
        if (std::ranges::none_of(faces, same)) {
            faces.push_back(candidate);
        }
    }
    return faces;
}

} // namespace larkspan
