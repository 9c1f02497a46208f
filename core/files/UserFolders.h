#pragma once

#include <filesystem>
#include <optional>

#include "core/files/FileUrl.h"

namespace larkspan {

// The user's Documents folder, made if nobody made it yet; none where the desktop names none.
std::optional<FileUrl> documentsFolder();

// A folder of the program's own in the user's data folder, by its name. It may not be there yet; empty where the
// desktop names none.
std::filesystem::path dataFolder(const char *name);

} // namespace larkspan
