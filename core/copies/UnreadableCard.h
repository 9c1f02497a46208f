#pragma once

#include <vector>

#include <QtCore/QString>

#include "core/files/FileUrl.h"

namespace larkspan {

// A card of which folders couldn't be read when it was imported, so that its copy may lack clips.
struct UnreadableCard
{
    FileUrl place;                // where it was mounted
    QString name;                 // as people know it
    std::vector<FileUrl> folders; // at least one; the card itself if nothing of it could be read

    friend bool operator==(const UnreadableCard &, const UnreadableCard &) = default;
};

} // namespace larkspan
