#pragma once

#include <cstdint>

#include <QtCore/QString>

namespace larkspan {

// A number of bytes as people read it, in decimal units: "Zero KB", "999 bytes", "2 KB", "1.2 MB", "34.56 GB".
[[nodiscard]] QString byteCountText(std::int64_t bytes);

} // namespace larkspan
