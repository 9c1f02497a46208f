#pragma once

#include <memory>

#include "core/clips/FrameClassifier.h"
#include "core/settings/CloudSettings.h"

namespace larkspan {

class HttpClient;

// The cloud tier: shows a few small stills of a clip to a vision model and lays its answer over the local analysis,
// which always runs first and stands alone whenever the model can't answer. Only these stills leave the machine.
// A value without state between clips; copies share the local classifier and the connections.
class CloudClassifier : public FrameClassifier
{
public:
    using Settings = CloudSettings;

    CloudClassifier(Settings settings, std::shared_ptr<const FrameClassifier> local,
                    std::shared_ptr<const HttpClient> client);

    // Waits for the model, at most as long as the client does. A failure there is told in modelNote alone.
    [[nodiscard]] FrameAnalysis analyze(std::span<const QImage> frames) const override;
    // The same; a stop ends the wait at once.
    [[nodiscard]] FrameAnalysis analyzeUntilStopped(std::span<const QImage> frames,
                                                    const std::stop_token &stop) const override;

private:
    Settings m_settings;
    std::shared_ptr<const FrameClassifier> m_local;
    std::shared_ptr<const HttpClient> m_client;
};

} // namespace larkspan
