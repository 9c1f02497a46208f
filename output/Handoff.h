#pragma once

#include <span>

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include "core/settings/HandoffFormat.h"
#include "output/MediaPaths.h"

namespace larkspan {

// A sorted shoot as a file for another program, in UTF-8. name: the shoot's, as people read it. A pure function of its
// arguments; the caller lets nobody change the clips meanwhile.
[[nodiscard]] QByteArray handoffText(HandoffFormat format, std::span<const ClipPtr> clips, const QString &name,
                                     const MediaPaths &paths = {});

} // namespace larkspan
