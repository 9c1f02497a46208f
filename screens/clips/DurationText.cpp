#include "screens/clips/DurationText.h"

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

QString durationText(double seconds)
{
    constexpr double longest = 360000.0 * 1000; // a broken header may claim any length
    const auto whole = std::isfinite(seconds) ? std::llround(std::clamp(seconds, 0.0, longest)) : 0LL;
    const auto twoDigits = [](long long value) { return u"%1"_s.arg(value, 2, 10, QLatin1Char('0')); };
    const QString tail = twoDigits(whole % 60);
    const auto minutes = whole / 60;
    return minutes < 60 ? u"%1:%2"_s.arg(minutes).arg(tail)
                        : u"%1:%2:%3"_s.arg(QString::number(minutes / 60), twoDigits(minutes % 60), tail);
}

} // namespace larkspan
