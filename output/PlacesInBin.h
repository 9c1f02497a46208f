#pragma once

#include <vector>

#include "core/files/FileUrl.h"

namespace larkspan {

// The files in a bin's folder under root that organizing may have made of a clip's file, judged by their names: the
// clip's, or the same with a number. In the order in which organizing tries the names, as far as that goes on without
// two gaps in a row. Any thread.
std::vector<FileUrl> placesInBin(const FileUrl &clip, const FileUrl &root, const QString &bin);

} // namespace larkspan
