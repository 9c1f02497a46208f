#pragma once

#include <filesystem>
#include <vector>

#include <QtCore/QString>

namespace larkspan {

// A folder that a file panel opens with one click.
struct QuickPlace
{
    QString name; // for people
    std::filesystem::path folder;

    friend bool operator==(const QuickPlace &, const QuickPlace &) = default;
};

// Return the user's folders, which need not exist.
std::filesystem::path homeFolder();
std::filesystem::path videosFolder();

// Returns home, the folders for documents and videos if they exist, and the volumes that a file manager lists: those
// under /media and /run/media, and removable devices under /mnt. mountTable and deviceTree: the kernel's. Blocks while
// it looks for the user's folders, but never on a volume.
std::vector<QuickPlace> quickPlaces(const std::filesystem::path &mountTable = "/proc/self/mountinfo",
                                    const std::filesystem::path &deviceTree = "/sys");

} // namespace larkspan
