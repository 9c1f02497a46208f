#include "core/projects/ClipRecord.h"

#include "core/projects/ClipFields.h"

namespace larkspan {

ClipRecord ClipRecord::fromClip(const MediaClip &clip)
{
    ClipRecord record;
    record.path = clip.url;
    forEachClipField([&](const auto &field) { record.*field.stored = std::invoke(field.own, clip); });
    return record;
}

ClipPtr ClipRecord::toClip() const
{
    auto clip = std::make_shared<MediaClip>(path);
    forEachClipField([&](const auto &field) { std::invoke(field.own, *clip) = this->*field.stored; });
    return clip;
}

} // namespace larkspan
