#include "output/MediaPaths.h"

#include <algorithm>

#include "output/VolumeDevice.h"

namespace larkspan {

namespace fs = std::filesystem;

namespace {

bool isShare(const MountEntry &mount)
{
    return mount.type == "cifs" || mount.type == "smb3" || mount.type == "nfs" || mount.type == "nfs4";
}

std::string nameOf(const MountEntry &mount, const fs::path &deviceTree, const fs::path &byLabel)
{
    if (isShare(mount)) {
        // "//server/Footage", "server:/export/Footage"
        const std::string &source = mount.source;
        const std::string share = source.substr(source.find_last_of("/:") + 1);
        return share.empty() ? mount.mountPoint.filename().native() : share;
    }
    const auto device = VolumeDevice::of(mount, deviceTree);
    const auto label = device ? device->label(byLabel) : std::nullopt;
    return label && !label->empty() ? *label : mount.mountPoint.filename().native();
}

} // namespace

std::vector<NamedVolume> namedVolumes(std::span<const MountEntry> table, const fs::path &deviceTree,
                                      const fs::path &byLabel)
{
    std::vector<NamedVolume> volumes;
    for (const MountEntry &mount : table) {
        if (mount.mountPoint.has_filename() && mountAt(table, mount.mountPoint) == &mount) {
            volumes.push_back({mount.mountPoint, nameOf(mount, deviceTree, byLabel)});
        }
    }
    return volumes;
}

MediaPaths MediaPaths::onMac(std::vector<NamedVolume> volumes)
{
    MediaPaths paths;
    paths.m_volumes = std::move(volumes);
    for (NamedVolume &volume : paths.m_volumes) {
        std::ranges::replace(volume.name, '/', ':'); // which is how a Mac's paths have it
    }
    std::ranges::stable_sort(paths.m_volumes, std::ranges::greater(),
                             [](const NamedVolume &volume) { return volume.mountPoint.native().size(); });
    return paths;
}

FileUrl MediaPaths::of(const FileUrl &file) const
{
    const std::string &path = file.path().native();
    for (const NamedVolume &volume : m_volumes) {
        const std::string &folder = volume.mountPoint.native();
        if (path.starts_with(folder) && path.size() > folder.size() && path[folder.size()] == '/') {
            return FileUrl("/Volumes/" + volume.name + path.substr(folder.size()));
        }
    }
    return file;
}

} // namespace larkspan
