#pragma once

#include <atomic>

#include "classify/vision/PersonEvidence.h"
#include "classify/vision/VisionModels.h"
#include "classify/vision/VisionRequests.h"

namespace larkspan {

// The time that each part of the local tier takes, summed over all threads. For benches.
struct VisionTimings
{
    struct Sum
    {
        std::atomic<std::int64_t> nanoseconds = 0;
        std::atomic<std::int64_t> runs = 0;
    };

    Sum objects;
    Sum scene;
    Sum pose;
    Sum face;
    Sum rooms;
};

// The five requests, answered by the networks: the object detector and the scene network give the classification and
// the print, the detector the human rectangles too; pose and face are asked only where it holds a person to be
// possible, and a person counts only if they confirm it in most frames of the clip. The frames of a clip are judged
// together.
class ModelRequests : public VisionRequests
{
public:
    // timings, if given, must outlive this and is added to by every frame.
    explicit ModelRequests(std::shared_ptr<const VisionModels> models, VisionTimings *timings = nullptr);

    [[nodiscard]] std::vector<std::optional<FrameObservations>> perform(std::span<const QImage> frames) const override;
    [[nodiscard]] std::vector<QString> supportedIdentifiers() const override;

private:
    // One frame of a clip as the models saw it, before the clip is judged.
    struct Sight
    {
        std::size_t frame = 0; // its place in the clip
        std::vector<DetectedObject> objects;
        RoomHead::Word word;
        PersonEvidence::Confirmation people;
    };

    std::optional<Sight> lookAt(const QImage &frame) const;
    std::optional<PersonEvidence::Confirmation> confirmPeople(const QImage &frame,
                                                              std::span<const DetectedObject> objects) const;

    std::shared_ptr<const VisionModels> m_models;
    VisionTimings *m_timings;
};

} // namespace larkspan
