#pragma once

#include <vector>

#include <QtCore/QString>

#include "core/copies/CopyRecord.h"

namespace larkspan {

// The page that reports the copies of a shoot: for people, in HTML, without script, fit to be printed. It calls a
// source safe to erase exactly if isSafeToErase() does, and otherwise names each file and folder that is in the way.
// name: of the shoot.
[[nodiscard]] QString copyReport(const std::vector<CopyRecord> &copies, const QString &name);

} // namespace larkspan
