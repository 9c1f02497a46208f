#pragma once

#include <filesystem>

namespace larkspan {

// The folder of the files that ship with the program: the nearest share/larkspan, looked for from the program's own
// folder upward. An installed program finds its prefix's so, and one that was just built its build folder's.
[[nodiscard]] std::filesystem::path shippedFiles();
// The same for a program in this folder. Where there is none anywhere, it is where an installed one would have it.
[[nodiscard]] std::filesystem::path shippedFilesOf(const std::filesystem::path &programFolder);

} // namespace larkspan
