#pragma once

#include <atomic>

#include "classify/VisionModels.h"
#include "classify/VisionRequests.h"

namespace larkspan {

// Where the time of the local tier goes, summed over all threads. For benches.
struct VisionTimings
{
    struct Sum
    {
        std::atomic<std::int64_t> nanoseconds = 0;
        std::atomic<std::int64_t> runs = 0;
    };

    Sum objects;
    Sum closer;
    Sum pose;
    Sum face;
    Sum rooms;
};

// The five requests, answered by the networks: the object detector's pass over a frame gives the classification, the
// print and the human rectangles, and its closer look at the middle makes the classification surer; the two that
// confirm a person look only where it holds a person to be possible.
class ModelRequests : public VisionRequests
{
public:
    // timings, if given, must outlive this and is added to by every frame.
    explicit ModelRequests(std::shared_ptr<const VisionModels> models, VisionTimings *timings = nullptr);

    [[nodiscard]] std::optional<FrameObservations> perform(const QImage &frame) const override;
    [[nodiscard]] std::vector<QString> supportedIdentifiers() const override;

private:
    std::optional<int> countPoses(const QImage &frame, std::span<const HumanObservation> humans) const;
    std::optional<int> countFaces(const QImage &frame, std::span<const HumanObservation> humans) const;

    std::shared_ptr<const VisionModels> m_models;
    VisionTimings *m_timings;
};

} // namespace larkspan
