#include "output/FootageCheck.h"

#include <system_error>
#include <vector>

#include "core/clips/FootageNames.h"

namespace larkspan {

namespace {

namespace fs = std::filesystem;

constexpr int mostEntries = 400;
constexpr std::size_t deepestLevel = 3; // of evidence; what lies at the root is at level 1

bool isFolder(const fs::directory_entry &entry)
{
    std::error_code unknown;
    return entry.symlink_status(unknown).type() == fs::file_type::directory;
}

} // namespace

FootageCheck looksLikeFootage(const FileUrl &volume, const std::stop_token &stop)
{
    std::error_code error; // of any kind: the rest of that folder shows nothing
    if (fs::is_directory(volume.path() / "DCIM", error)) {
        return {.looksLikeFootage = true};
    }
    FootageCheck check;
    // Each folder before what comes after it, one entry at a time. The length of the way is the level.
    std::vector<fs::directory_iterator> way;
    way.emplace_back(volume.path(), error);
    while (!way.empty() && check.entries < mostEntries && !stop.stop_requested()) {
        if (way.back() == fs::directory_iterator()) {
            way.pop_back();
            continue;
        }
        const fs::directory_entry entry = *way.back();
        const std::size_t level = way.size();
        way.back().increment(error);
        const fs::path name = entry.path().filename();
        if (isHidden(name)) {
            continue;
        }
        ++check.entries;
        if (level <= deepestLevel) {
            if (isVideoFile(name)) {
                check.looksLikeFootage = true;
                return check;
            }
            if (isFolder(entry) && !isPackage(name)) {
                way.emplace_back(entry.path(), error);
            }
        }
    }
    return check;
}

} // namespace larkspan
