#include "classify/vision/RoomEvidence.h"

#include <algorithm>
#include <set>

#include "classify/vision/ObjectEvidence.h"
#include "core/bins/RoomLabel.h"

namespace larkspan::RoomEvidence {

namespace {

// The one bin that an identifier feeds, or the first of several; none for what the table doesn't know.
std::optional<QString> binOf(const QString &identifier)
{
    const auto &bins = RoomLabel::binsByIdentifier();
    const auto entry = bins.find(identifier);
    return entry == bins.end() ? std::nullopt : std::optional(entry->second.front());
}

} // namespace

std::vector<ClassificationObservation> merged(const RoomHead::Reading &place,
                                              std::vector<ClassificationObservation> objects)
{
    std::map<QString, float> trust;
    for (std::size_t i = 0; i < place.scenes.size(); ++i) {
        if (const auto bin = binOf(place.scenes[i].identifier)) {
            auto &largest = trust[*bin];
            largest = std::max(largest, place.trust[i]);
        }
    }
    auto result = place.scenes;
    for (auto &object : objects) {
        const auto bin = binOf(object.identifier);
        if (bin && !RoomLabel::exclusiveBins().contains(*bin)) {
            const auto found = trust.find(*bin);
            object.confidence *= found == trust.end() ? 0.0f : found->second;
        }
        const auto known = std::ranges::find(result, object.identifier, &ClassificationObservation::identifier);
        if (known == result.end()) {
            result.push_back(std::move(object));
        } else {
            known->confidence = std::max(known->confidence, object.confidence);
        }
    }
    return result;
}

std::vector<QString> identifiers(const RoomHead &head)
{
    auto all = ObjectEvidence::identifiers();
    std::set<QString> known(all.begin(), all.end());
    for (const auto &scene : head.identifiers()) {
        if (known.insert(scene).second) {
            all.push_back(scene);
        }
    }
    return all;
}

} // namespace larkspan::RoomEvidence
