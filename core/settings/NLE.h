#pragma once

#include <array>

#include <QtCore/QString>

namespace larkspan {

// The editors that a user can name as the target of the event.
enum class NLE { finalCut, resolve, premiere };

inline constexpr std::array allNLEs{NLE::finalCut, NLE::resolve, NLE::premiere};

// "Final Cut Pro", "DaVinci Resolve", "Premiere Pro".
QString nleLabel(NLE editor);
// The stored form: the case's name. A missing or unknown value reads as finalCut.
QString nleRawValue(NLE editor);
NLE nleFromRawValue(const QString &rawValue);

} // namespace larkspan
