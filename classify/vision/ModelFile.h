#pragma once

#include <filesystem>
#include <optional>
#include <vector>

namespace larkspan {

// All bytes of a model's file; nothing where it is no plain file or can't be read to its end. From any thread.
[[nodiscard]] std::optional<std::vector<char>> readModelFile(const std::filesystem::path &file);

} // namespace larkspan
