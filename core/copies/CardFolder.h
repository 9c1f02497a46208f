#pragma once

#include <QtCore/QDate>
#include <QtCore/QString>

#include "core/files/FileUrl.h"

namespace larkspan {

// Returns the folder for a card's clips: "NAME — 2026-05-04" under root, with " (2)", " (3)" … while that is taken.
// The folder isn't made.
FileUrl datedImportFolder(const QString &volumeName, const FileUrl &root, QDate today);

// Renames the folder of a copy that isn't complete to "NAME (unfinished)", or to that with " (2)" and so on behind it
// while that is taken. Nothing is replaced, and the new name lasts. Returns the folder's place, which is the old one if
// it can't be renamed.
[[nodiscard]] FileUrl markUnfinished(const FileUrl &folder);

} // namespace larkspan
