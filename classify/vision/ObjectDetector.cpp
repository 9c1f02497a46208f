#include "classify/vision/ObjectDetector.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "classify/vision/DetectorMath.h"
#include "classify/vision/PictureTensor.h"

namespace larkspan {

namespace {

constexpr int cellPixels = 4;
constexpr int longSide = 448; // pixels
// Two boxes of one kind that share more than this are one object.
constexpr double sameObject = 0.5;

constexpr std::array outputNames{
    InferenceSession::Expected{"heat", ObjectDetector::kindCount},
    InferenceSession::Expected{"reach", 4},
    InferenceSession::Expected{"pooled", ObjectDetector::featureCount},
};

float logitOf(float probability)
{
    return std::log(probability / (1.0f - probability));
}

// Returns whether no neighbour is higher; among equal neighbours the first is the peak.
bool isPeak(std::span<const float> map, int rows, int columns, int row, int column)
{
    const float value = map[static_cast<std::size_t>(row) * columns + column];
    for (int y = std::max(0, row - 1); y <= std::min(rows - 1, row + 1); ++y) {
        for (int x = std::max(0, column - 1); x <= std::min(columns - 1, column + 1); ++x) {
            const bool earlier = y < row || (y == row && x < column);
            const float other = map[static_cast<std::size_t>(y) * columns + x];
            if (other > value || (earlier && other == value)) {
                return false;
            }
        }
    }
    return true;
}

// Returns the objects of one kind that the network found in a picture of this size, the surest first. heat has the
// kind's likelihood in each cell; reach how far an object there extends to the left, the top, the right and the bottom.
std::vector<DetectedObject> objectsOf(int kind, const ModelOutput &heat, const ModelOutput &reach, QSize size)
{
    const float lowest = logitOf(ObjectDetector::minConfidence);
    const auto map = heat.plane(kind);
    std::vector<DetectedObject> found;
    for (int row = 0; row < heat.rows; ++row) {
        for (int column = 0; column < heat.columns; ++column) {
            const auto cell = static_cast<std::size_t>(row) * heat.columns + column;
            if (map[cell] < lowest || !isPeak(map, heat.rows, heat.columns, row, column)) {
                continue;
            }
            const double x = column * cellPixels;
            const double y = row * cellPixels;
            const QPointF topLeft((x - reach.plane(0)[cell]) / size.width(),
                                  (y - reach.plane(1)[cell]) / size.height());
            const QPointF bottomRight((x + reach.plane(2)[cell]) / size.width(),
                                      (y + reach.plane(3)[cell]) / size.height());
            const auto box = QRectF(topLeft, bottomRight) & QRectF(0, 0, 1, 1);
            if (!box.isEmpty()) {
                found.push_back({kind, probabilityOf(map[cell]), box});
            }
        }
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto &a, const auto &b) { return a.confidence > b.confidence; });
    return found;
}

void addUnlessKnown(std::vector<DetectedObject> &objects, std::size_t firstOfKind, const DetectedObject &object)
{
    const bool known = std::any_of(objects.begin() + static_cast<std::ptrdiff_t>(firstOfKind), objects.end(),
                                   [&](const auto &other) { return overlapOf(other.box, object.box) > sameObject; });
    if (!known) {
        objects.push_back(object);
    }
}

} // namespace

tl::expected<ObjectDetector, ModelError> ObjectDetector::load(const std::filesystem::path &file)
{
    return InferenceSession::load(file, outputNames).map([](InferenceSession &&session) {
        return ObjectDetector(std::move(session));
    });
}

std::optional<ObjectDetector::Result> ObjectDetector::detect(const QImage &image) const
{
    const auto size = networkSize(image.size(), longSide);
    auto outputs = m_session.run(PictureTensor(image, size, PictureTensor::Range::Bytes));
    if (!outputs) {
        return std::nullopt;
    }
    const auto &heat = (*outputs)[0];
    const auto &reach = (*outputs)[1];
    Result result;
    result.features = std::move((*outputs)[2].values);

    const auto highest = std::span(result.features).last(kindCount);
    for (int kind = 0; kind < kindCount; ++kind) {
        if (highest[static_cast<std::size_t>(kind)] < minConfidence) {
            continue;
        }
        const std::vector<DetectedObject> found = objectsOf(kind, heat, reach, size);
        const auto firstOfKind = result.objects.size();
        for (const auto &object : found) {
            addUnlessKnown(result.objects, firstOfKind, object);
        }
    }
    return result;
}

} // namespace larkspan
