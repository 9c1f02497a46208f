#pragma once

#include <filesystem>
#include <optional>

#include <QtCore/QString>

namespace larkspan {

// Returns the path that an editor has typed or pasted: "~" is the home folder, a file URL becomes its path, and a
// relative path starts at the open folder. Surrounding quotation marks and blanks, and a slash at the end, are dropped.
// Returns none for text that names no local file.
std::optional<std::filesystem::path> typedPath(const QString &text, const std::filesystem::path &open,
                                               const std::filesystem::path &home);

} // namespace larkspan
