#pragma once

#include <memory>
#include <optional>
#include <vector>

namespace larkspan {

// The look of a frame, as a point in a space where near means alike. Made by the local classifier, never changed
// afterwards, shared by reference between threads. Units are those of the splitting rules: 12 apart or less is one
// room.
class FeaturePrint
{
public:
    explicit FeaturePrint(std::vector<float> values) : m_values(std::move(values)) {}

    const std::vector<float> &values() const { return m_values; }

    // Euclidean distance; none when the prints differ in length or the distance isn't finite.
    std::optional<float> computeDistance(const FeaturePrint &other) const;

private:
    std::vector<float> m_values;
};

using FeaturePrintPtr = std::shared_ptr<const FeaturePrint>;

} // namespace larkspan
