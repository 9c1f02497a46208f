#pragma once

#include <span>
#include <vector>

#include <QtCore/QString>

#include "core/clips/MediaClip.h"

namespace larkspan {

// Plain string order by code point, in which an event lists its bins.
[[nodiscard]] bool codePointsLess(const QString &a, const QString &b);

// Each bin's clips together, in shooting order; the bins by code point.
[[nodiscard]] std::vector<ClipPtr> inEventOrder(std::span<const ClipPtr> clips);

} // namespace larkspan
