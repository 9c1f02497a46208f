#pragma once

#include <optional>
#include <span>

#include <QtCore/QString>

#include "output/MediaPaths.h"

namespace larkspan {

// The shape of an empty project beside the clips. Automatic asks the clips: vertical when more than half are.
enum class ProjectOrientation { automatic, vertical, horizontal };

// Writes a sorted shoot as an FCPXML 1.10 event: one asset per clip, and its bins as keywords over its whole length.
// A pure function; the caller owns the clips and lets nobody change them meanwhile.
class FCPXMLWriter
{
public:
    // The file's text, well-formed for any clips and names: what XML can't hold becomes U+FFFD.
    // clips: in any order; name: the event's, as people read it. Without an orientation there is no project.
    [[nodiscard]] static QString event(std::span<const ClipPtr> clips, const QString &name,
                                       std::optional<ProjectOrientation> projectOrientation = std::nullopt);

    // The same event with each clip's own timecode for its start; a clip without one starts at zero.
    [[nodiscard]] static QString eventWithTimecode(std::span<const ClipPtr> clips, const QString &name,
                                                   const MediaPaths &paths = {});

    // The event with timecode, and a project of its name: all clips on one timeline in the order of a tour, a marker at
    // each bin's start.
    [[nodiscard]] static QString stringOut(std::span<const ClipPtr> clips, const QString &name,
                                           const MediaPaths &paths = {});
};

} // namespace larkspan
