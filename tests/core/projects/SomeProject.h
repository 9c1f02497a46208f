#pragma once

#include <chrono>
#include <limits>

#include "core/projects/Project.h"

namespace larkspan::test {

inline constexpr Date someDay =
    std::chrono::sys_days{std::chrono::year{2026} / std::chrono::May / 4} + std::chrono::hours(10);

// A project of one clip that has something in every field.
inline CachedProject projectOf(const FileUrl &folder, Date savedAt = someDay)
{
    return {.summary = {.id = projectID(folder),
                        .name = folder.lastPathComponent(),
                        .folderPath = folder,
                        .clipCount = 1,
                        .binCount = 2,
                        .reviewCount = 1,
                        .savedAt = savedAt},
            .clips = {{.path = folder.appending(QStringLiteral("a 1.mov")),
                       .duration = 12.345,
                       .naturalW = 3840,
                       .naturalH = 2160,
                       .displayW = 2160,
                       .displayH = 3840,
                       .frameDurationValue = std::numeric_limits<std::int64_t>::max(),
                       .frameDurationScale = 60000,
                       .creationDate = someDay + std::chrono::microseconds(123456),
                       .cameraModel = QStringLiteral("Kamera \"Ü\""),
                       .primaryBin = QStringLiteral("Kitchen 2"),
                       .extraBins = {QStringLiteral("Dining Room"), QStringLiteral("Hallway / Stairs")},
                       .confidence = 0.1,
                       .runnerUp = QStringLiteral("Pool"),
                       .runnerUpScore = 1.0 / 3.0,
                       .needsReview = true,
                       .reviewReason = QStringLiteral("torn between Kitchen and Pool — 0.10 vs 0.33"),
                       .humanFraction = 0.02}}};
}

} // namespace larkspan::test
