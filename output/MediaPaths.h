#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "core/clips/MediaClip.h"
#include "output/MountTable.h"

namespace larkspan {

// A mounted volume and the name that it goes by.
struct NamedVolume
{
    std::filesystem::path mountPoint;
    std::string name;

    friend bool operator==(const NamedVolume &, const NamedVolume &) = default;
};

// The volumes of a mount table, the root left out: a share by its own name, others by their label or, without one, by
// the folder that they are mounted on. deviceTree: "/sys". byLabel: the folder of links that are named after the
// labels.
[[nodiscard]] std::vector<NamedVolume> namedVolumes(std::span<const MountEntry> table,
                                                    const std::filesystem::path &deviceTree,
                                                    const std::filesystem::path &byLabel);

// The place of the footage on the machine that will open an exported file. A plain value; any thread.
class MediaPaths
{
public:
    // The paths as they are on this computer.
    MediaPaths() = default;
    // The paths on a Mac, which mounts each volume on "/Volumes" and its name. Files on none of the volumes keep
    // theirs.
    static MediaPaths onMac(std::vector<NamedVolume> volumes);

    [[nodiscard]] FileUrl of(const FileUrl &file) const;
    // The footage of a clip: where the importer brought it, else its source.
    [[nodiscard]] FileUrl of(const MediaClip &clip) const { return of(clip.destinationURL.value_or(clip.sourceURL())); }

private:
    std::vector<NamedVolume> m_volumes; // the deepest mount points first
};

} // namespace larkspan
