#pragma once

#include <functional>
#include <tuple>

#include <QtCore/QString>

#include "core/projects/ClipRecord.h"

namespace larkspan {

// A field of a stored clip: its key in the stored form, its place in the record, and the value of a MediaClip that it
// holds, as a callable.
template <typename Stored, typename Own>
struct ClipField
{
    QLatin1StringView key;
    Stored ClipRecord::*stored;
    Own own;
};

// clang 16 doesn't deduce an aggregate's arguments by itself.
template <typename Stored, typename Own>
ClipField(QLatin1StringView, Stored ClipRecord::*, Own) -> ClipField<Stored, Own>;

// One side of a clip's size, as the own value of a field.
struct ClipWidth
{
    QSizeF MediaClip::*size;

    double operator()(const MediaClip &clip) const { return (clip.*size).width(); }
    double &operator()(MediaClip &clip) const { return (clip.*size).rwidth(); }
};

struct ClipHeight
{
    QSizeF MediaClip::*size;

    double operator()(const MediaClip &clip) const { return (clip.*size).height(); }
    double &operator()(MediaClip &clip) const { return (clip.*size).rheight(); }
};

// Calls visit with each stored field but the path, which a clip has from the start. The one list of them: copying,
// writing and reading a record all use it.
template <typename Visit>
void forEachClipField(const Visit &visit)
{
    using namespace Qt::Literals::StringLiterals;
    const std::tuple fields{
        ClipField{"duration"_L1, &ClipRecord::duration, &MediaClip::duration},
        ClipField{"naturalW"_L1, &ClipRecord::naturalW, ClipWidth{&MediaClip::naturalSize}},
        ClipField{"naturalH"_L1, &ClipRecord::naturalH, ClipHeight{&MediaClip::naturalSize}},
        ClipField{"displayW"_L1, &ClipRecord::displayW, ClipWidth{&MediaClip::displaySize}},
        ClipField{"displayH"_L1, &ClipRecord::displayH, ClipHeight{&MediaClip::displaySize}},
        ClipField{"frameDurationValue"_L1, &ClipRecord::frameDurationValue, &MediaClip::frameDurationValue},
        ClipField{"frameDurationScale"_L1, &ClipRecord::frameDurationScale, &MediaClip::frameDurationScale},
        ClipField{"creationDate"_L1, &ClipRecord::creationDate, &MediaClip::creationDate},
        ClipField{"cameraModel"_L1, &ClipRecord::cameraModel, &MediaClip::cameraModel},
        ClipField{"primaryBin"_L1, &ClipRecord::primaryBin, &MediaClip::primaryBin},
        ClipField{"extraBins"_L1, &ClipRecord::extraBins, &MediaClip::extraBins},
        ClipField{"confidence"_L1, &ClipRecord::confidence, &MediaClip::confidence},
        ClipField{"runnerUp"_L1, &ClipRecord::runnerUp, &MediaClip::runnerUp},
        ClipField{"runnerUpScore"_L1, &ClipRecord::runnerUpScore, &MediaClip::runnerUpScore},
        ClipField{"needsReview"_L1, &ClipRecord::needsReview, &MediaClip::needsReview},
        ClipField{"reviewReason"_L1, &ClipRecord::reviewReason, &MediaClip::reviewReason},
        ClipField{"humanFraction"_L1, &ClipRecord::humanFraction, &MediaClip::humanFraction},
    };
    std::apply([&visit](const auto &...field) { (visit(field), ...); }, fields);
}

} // namespace larkspan
