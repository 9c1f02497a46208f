#include "core/files/ShippedFiles.h"

namespace larkspan {

std::filesystem::path shippedFiles()
{
    std::error_code error;
    return shippedFilesOf(std::filesystem::read_symlink("/proc/self/exe", error).parent_path());
}

std::filesystem::path shippedFilesOf(const std::filesystem::path &programFolder)
{
    const std::filesystem::path place = "share/larkspan";
    std::error_code error;
    for (auto folder = programFolder; folder.has_relative_path(); folder = folder.parent_path()) {
        if (std::filesystem::is_directory(folder / place, error)) {
            return folder / place;
        }
    }
    return programFolder.parent_path() / place;
}

} // namespace larkspan
