#pragma once

#include "classify/vision/VisionRequests.h"
#include "core/clips/FrameClassifier.h"

namespace larkspan {

// The local tier: gathers what the requests find in the frames of one clip and turns it into votes for bins by
// the table of identifiers. A value without state of its own; copies share the requests.
class VisionClassifier : public FrameClassifier
{
public:
    struct Settings
    {
        double minIdentifierConfidence = 0.06; // observations below it are ignored
        int rawKeepCount = 12;                 // length limit of FrameAnalysis::raw
        friend bool operator==(const Settings &, const Settings &) = default;
    };

    // Without requests (the models could not be loaded) every analysis is empty.
    explicit VisionClassifier(std::shared_ptr<const VisionRequests> requests, Settings settings);
    explicit VisionClassifier(std::shared_ptr<const VisionRequests> requests);

    // A frame whose requests fail counts for nothing.
    [[nodiscard]] FrameAnalysis analyze(std::span<const QImage> frames) const override;

    // All identifiers that can come up, sorted ascending; empty without requests.
    [[nodiscard]] std::vector<QString> supportedIdentifiers() const;

private:
    std::shared_ptr<const VisionRequests> m_requests;
    Settings m_settings;
};

} // namespace larkspan
