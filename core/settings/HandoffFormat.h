#pragma once

#include <array>
#include <optional>

#include <QtCore/QString>

namespace larkspan {

// The files that a sorted shoot can be written as on demand, beside the event.
enum class HandoffFormat { kdenlive, fcpxmlTimeline, otio, fcpxmlTimecode, csv };

inline constexpr std::array allHandoffFormats{HandoffFormat::kdenlive, HandoffFormat::fcpxmlTimeline,
                                              HandoffFormat::otio, HandoffFormat::fcpxmlTimecode, HandoffFormat::csv};

// The stored form: "kdenlive", "fcpxml-timeline", "otio", "fcpxml-timecode", "csv". None for any other text.
QString handoffRawValue(HandoffFormat format);
std::optional<HandoffFormat> handoffFromRawValue(const QString &rawValue);

// The end of the file's name, behind the shoot's: ".kdenlive", " Timeline.fcpxml". None makes the event's name.
QString handoffSuffix(HandoffFormat format);

// Returns whether the file holds the clips' own timecodes.
bool holdsTimecode(HandoffFormat format);

} // namespace larkspan
