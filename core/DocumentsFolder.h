#pragma once

#include <optional>

#include "core/FileUrl.h"

namespace larkspan {

// The user's Documents folder, made if nobody made it yet; none where the desktop names none.
std::optional<FileUrl> documentsFolder();

} // namespace larkspan
