#include "core/projects/Project.h"

#include <cstdint>

namespace larkspan {

QString projectID(const FileUrl &folder)
{
    auto path = folder.path().lexically_normal();
    if (!path.has_filename() && path.has_relative_path()) {
        path = path.parent_path();
    }
    std::uint64_t hash = 5381;
    for (const char byte : path.native()) {
        hash = hash * 33 + static_cast<unsigned char>(byte);
    }
    return QString::number(hash, 16);
}

} // namespace larkspan
