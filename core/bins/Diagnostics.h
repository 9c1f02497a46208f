#pragma once

#include <span>
#include <vector>

#include <QtCore/QString>

#include "core/clips/MediaClip.h"

namespace larkspan {

// Texts for whoever tunes the bin table.

// Returns a CSV of what the classifier saw: a line for each clip and identifier, the clips in their order, the surest
// identifier first; a clip without any has one line. Only the list of extra bins is quoted, nothing is escaped.
QString clipDiagnostics(std::span<const ClipPtr> clips);

// Returns all names that the classifier has: an identifier a line, ascending, without a line feed behind the last.
QString vocabularyText(std::vector<QString> identifiers);

} // namespace larkspan
