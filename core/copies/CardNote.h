#pragma once

#include <span>

#include <QtCore/QString>

#include "core/copies/UnfinishedCopy.h"
#include "core/files/FileUrl.h"

namespace larkspan {

// The warning about folders of a card that couldn't be read, in one line that says not to erase the card. Names up to
// three of them by their places on the card. card: where it is mounted; name: how people know it.
[[nodiscard]] QString unreadableNote(const FileUrl &card, const QString &name, std::span<const FileUrl> folders);

// The note about a copy that ended before its last file, in one line. Names up to five of the files that were left out.
[[nodiscard]] QString unfinishedNote(const UnfinishedCopy &copy);

} // namespace larkspan
