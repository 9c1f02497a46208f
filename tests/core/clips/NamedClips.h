#pragma once

#include <algorithm>
#include <iterator>
#include <set>
#include <vector>

#include "core/bins/RoomLabel.h"
#include "core/projects/ClipRecord.h"
#include "core/shoot/Shoot.h"

namespace larkspan::test {

// All of a shoot that an edit may change.
struct ShootState
{
    std::vector<ClipRecord> records;
    std::set<QUuid> confirmed;

    friend bool operator==(const ShootState &, const ShootState &) = default;
};

inline ShootState stateOf(const Shoot &shoot)
{
    ShootState state{.records = {}, .confirmed = shoot.confirmedReview()};
    std::ranges::transform(shoot.clips(), std::back_inserter(state.records),
                           [](const ClipPtr &clip) { return ClipRecord::fromClip(*clip); });
    return state;
}

// A clip whose name says its bin and its hour: "kitchen 3". "dark" is unsorted and under review.
inline ClipPtr namedClip(const QString &name)
{
    auto clip = std::make_shared<MediaClip>(FileUrl("/shoot/" + name.toStdString() + ".mov"));
    const QStringList words = name.split(u' ');
    clip->creationDate = Date(std::chrono::hours(words.value(1).toInt()));
    clip->needsReview = words[0] == QStringLiteral("dark");
    clip->primaryBin = clip->needsReview ? unsortedBin() : words[0][0].toUpper() + words[0].sliced(1);
    clip->reviewReason = clip->needsReview ? QStringLiteral("too dark") : QString();
    return clip;
}

inline std::vector<ClipPtr> namedClips(std::initializer_list<QString> names)
{
    std::vector<ClipPtr> clips(names.size());
    std::ranges::transform(names, clips.begin(), namedClip);
    return clips;
}

// Two clips under review, a kitchen and two pools.
inline Shoot fiveClips()
{
    return Shoot(namedClips({QStringLiteral("dark 1"), QStringLiteral("dark 2"), QStringLiteral("kitchen 3"),
                             QStringLiteral("pool 4"), QStringLiteral("pool 5")}));
}

inline ClipPtr clipNamed(const Shoot &shoot, const QString &name)
{
    return *std::ranges::find(shoot.clips(), name, [](const ClipPtr &clip) { return clip->url.baseName(); });
}

inline std::vector<QString> clipNames(const std::vector<ClipPtr> &clips)
{
    std::vector<QString> names(clips.size());
    std::ranges::transform(clips, names.begin(), [](const ClipPtr &clip) { return clip->url.baseName(); });
    return names;
}

} // namespace larkspan::test
