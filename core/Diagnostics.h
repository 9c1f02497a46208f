#pragma once

#include <span>
#include <vector>

#include <QtCore/QString>

#include "core/MediaClip.h"

namespace larkspan {

// Texts for whoever tunes the bin table.

// What the classifier saw: a CSV with a line for each clip and identifier, the clips in their order, the surest
// identifier first; a clip without any has one line. Only the list of extra bins is quoted, nothing is escaped.
QString clipDiagnostics(std::span<const ClipPtr> clips);

// What the classifier can name: a line for each identifier, ascending, without a line feed behind the last.
QString vocabularyText(std::vector<QString> identifiers);

} // namespace larkspan
