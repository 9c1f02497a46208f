#include "classify/vision/ModelFile.h"

#include <fstream>

namespace larkspan {

std::optional<std::vector<char>> readModelFile(const std::filesystem::path &file)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) {
        return std::nullopt;
    }
    const auto size = std::filesystem::file_size(file, error);
    std::ifstream stream(file, std::ios::binary);
    if (error || !stream) {
        return std::nullopt;
    }
    std::vector<char> bytes(size);
    if (!stream.read(bytes.data(), static_cast<std::streamsize>(size))) {
        return std::nullopt;
    }
    return bytes;
}

} // namespace larkspan
