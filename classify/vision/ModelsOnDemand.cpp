#include "classify/vision/ModelsOnDemand.h"

#include "core/base/FreedMemory.h"

namespace larkspan {

ModelsOnDemand::Loaded ModelsOnDemand::get()
{
    const std::lock_guard lock(m_mutex);
    m_kept = m_used.lock();
    if (!m_kept) {
        Loaded loaded = m_load();
        if (!loaded) {
            return loaded;
        }
        m_kept = *loaded;
        m_used = m_kept;
    }
    return m_kept;
}

void ModelsOnDemand::letGo()
{
    const std::lock_guard lock(m_mutex);
    m_kept.reset();
    if (m_used.expired()) {
        returnFreedMemory();
    }
}

} // namespace larkspan
