#pragma once

#include <functional>
#include <mutex>

#include "classify/vision/VisionModels.h"

namespace larkspan {

// The networks of the local tier for a program that needs them now and then: read when somebody asks for them, and kept
// until they are let go. May be called from any thread.
class ModelsOnDemand
{
public:
    using Loaded = tl::expected<std::shared_ptr<const VisionModels>, ModelError>;

    // load: reads the models; called with a lock held, by whoever asks.
    explicit ModelsOnDemand(std::function<Loaded()> load) : m_load(std::move(load)) {}

    // Waits while they are read. After an error they are read anew the next time.
    [[nodiscard]] Loaded get();
    // Frees their memory once nobody uses them.
    void letGo();

private:
    const std::function<Loaded()> m_load;
    std::mutex m_mutex;
    std::shared_ptr<const VisionModels> m_kept;
    std::weak_ptr<const VisionModels> m_used; // they may be in use after they were let go
};

} // namespace larkspan
