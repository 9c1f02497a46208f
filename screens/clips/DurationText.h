#pragma once

#include <QtCore/QString>

namespace larkspan {

// "0:07", "12:05", "1:02:03"; seconds are rounded to whole ones, and no number of them counts as 0.
QString durationText(double seconds);

} // namespace larkspan
