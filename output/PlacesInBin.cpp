#include "output/PlacesInBin.h"

#include <climits>

#include "output/FileNames.h"

namespace larkspan {

std::vector<FileUrl> placesInBin(const FileUrl &clip, const FileUrl &root, const QString &bin)
{
    constexpr int mostGaps = 1; // somebody may have deleted one of several of a name
    std::vector<FileUrl> places;
    const std::filesystem::path folder = root.path() / binFolderName(bin);
    for (int n = 1, gaps = 0; gaps <= mostGaps; ++n) {
        std::filesystem::path file = folder / numberedName(clip.lastPathBytes(), n, NAME_MAX);
        std::error_code unreachable; // counts as not there
        if (std::filesystem::is_regular_file(file, unreachable)) {
            places.emplace_back(std::move(file));
            gaps = 0;
        } else {
            ++gaps;
        }
    }
    return places;
}

} // namespace larkspan
