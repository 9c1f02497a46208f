#pragma once

#include <QtCore/QDate>
#include <QtCore/QString>

#include "core/FileUrl.h"

namespace larkspan {

// Where a card's clips go: "NAME — 2026-05-04" under root, with " (2)", " (3)" and so on while something stands there.
// The folder isn't made.
FileUrl datedImportFolder(const QString &volumeName, const FileUrl &root, QDate today);

} // namespace larkspan
