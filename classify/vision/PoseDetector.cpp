#include "classify/vision/PoseDetector.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "classify/vision/DetectorMath.h"
#include "classify/vision/PictureTensor.h"

namespace larkspan {

namespace {

constexpr int pictureSide = 192;
constexpr int cellPixels = 4;
// Sets how fast far cells lose against near ones: a value is divided by its distance plus this, in cells.
constexpr float nearCells = 1.8f;

constexpr std::array outputNames{
    InferenceSession::Expected{"center", 1},
    InferenceSession::Expected{"joints", BodyPose::jointCount},
    InferenceSession::Expected{"regress", 2 * BodyPose::jointCount},
    InferenceSession::Expected{"offset", 2 * BodyPose::jointCount},
};

struct Cell
{
    float row = 0.0f;
    float column = 0.0f;
    std::size_t index = 0;
};

// The cell of the highest probability, the ones near the given place preferred.
Cell bestNear(std::span<const float> logits, int rows, int columns, float row, float column)
{
    Cell best;
    float highest = -1.0f;
    std::size_t index = 0;
    for (int y = 0; y < rows; ++y) {
        for (int x = 0; x < columns; ++x, ++index) {
            const float distance = std::hypot(static_cast<float>(y) - row, static_cast<float>(x) - column);
            const float value = probabilityOf(logits[index]) / (distance + nearCells);
            if (value > highest) {
                highest = value;
                best = {static_cast<float>(y), static_cast<float>(x), index};
            }
        }
    }
    return best;
}

// The smallest square, in pixels, around the middle of the part that holds all of it.
QRect squareAround(const QRectF &part, QSize image)
{
    const QRectF pixels(part.x() * image.width(), part.y() * image.height(), part.width() * image.width(),
                        part.height() * image.height());
    const int side = std::max(1, static_cast<int>(std::lround(std::max(pixels.width(), pixels.height()))));
    const auto corner = pixels.center() - QPointF(side / 2.0, side / 2.0);
    return {static_cast<int>(std::lround(corner.x())), static_cast<int>(std::lround(corner.y())), side, side};
}

} // namespace

tl::expected<PoseDetector, ModelError> PoseDetector::load(const std::filesystem::path &file)
{
    return InferenceSession::load(file, outputNames).map([](InferenceSession &&session) {
        return PoseDetector(std::move(session));
    });
}

std::optional<BodyPose> PoseDetector::read(const QImage &image, const QRectF &part) const
{
    const auto square = squareAround(part, image.size());
    const PictureTensor picture(image, square, {pictureSide, pictureSide}, PictureTensor::Range::Bytes);
    const auto outputs = m_session.run(picture);
    if (!outputs) {
        return std::nullopt;
    }
    const auto &[center, joints, regress, offset] =
        std::tie((*outputs)[0], (*outputs)[1], (*outputs)[2], (*outputs)[3]);

    const auto middle = bestNear(center.plane(0), center.rows, center.columns, static_cast<float>(center.rows) / 2.0f,
                                 static_cast<float>(center.columns) / 2.0f);
    BodyPose pose;
    for (int joint = 0; joint < BodyPose::jointCount; ++joint) {
        const float row = middle.row + regress.plane(2 * joint)[middle.index];
        const float column = middle.column + regress.plane(2 * joint + 1)[middle.index];
        const auto cell = bestNear(joints.plane(joint), joints.rows, joints.columns, row, column);
        const auto i = static_cast<std::size_t>(joint);
        pose.confidence[i] = probabilityOf(joints.plane(joint)[cell.index]);
        const double y = (cell.row + offset.plane(2 * joint)[cell.index]) * cellPixels / pictureSide;
        const double x = (cell.column + offset.plane(2 * joint + 1)[cell.index]) * cellPixels / pictureSide;
        pose.joints[i] = {(square.x() + x * square.width()) / image.width(),
                          (square.y() + y * square.height()) / image.height()};
    }
    return pose;
}

} // namespace larkspan
