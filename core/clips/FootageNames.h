#pragma once

#include <filesystem>

namespace larkspan {

// Tell files and folders apart by their names alone. They take the last component, without its folders.

// By its extension, in any case: mp4, mov, m4v, mxf, avi, mts, m2ts, braw, insv.
[[nodiscard]] bool isVideoFile(const std::filesystem::path &name);
// A folder that its maker shows as one document: what lies in it is no footage of a shoot.
[[nodiscard]] bool isPackage(const std::filesystem::path &name);
// The "._" companions of other systems among them.
[[nodiscard]] bool isHidden(const std::filesystem::path &name);

} // namespace larkspan
