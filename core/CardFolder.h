#pragma once

#include <QtCore/QDate>
#include <QtCore/QString>

#include "core/FileUrl.h"

namespace larkspan {

// Where a card's clips go: "NAME — 2026-05-04" under root, with " (2)", " (3)" and so on while something stands there.
// The folder isn't made.
FileUrl datedImportFolder(const QString &volumeName, const FileUrl &root, QDate today);

// Renames the folder of a copy that isn't complete to "NAME (unfinished)", or to that with " (2)" and so on behind it
// while something stands there. Nothing is replaced, and the new name lasts. Returns where the folder now is: where it
// was if it can't be renamed.
[[nodiscard]] FileUrl markUnfinished(const FileUrl &folder);

} // namespace larkspan
