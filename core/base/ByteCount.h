#pragma once

#include <cstdint>

#include <QtCore/QString>

namespace larkspan {

// Returns a number of bytes as people read it, in decimal units: "Zero KB", "999 bytes", "2 KB", "1.2 MB", "34.56 GB".
// It is in core because the report of a copy and the screens have to write a number in the same way.
[[nodiscard]] QString byteCountText(std::int64_t bytes);

} // namespace larkspan
