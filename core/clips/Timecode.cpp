#include "core/clips/Timecode.h"

#include <cmath>

#include <QtCore/QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

std::optional<FrameRate> FrameRate::nearest(double framesPerSecond)
{
    if (std::isnan(framesPerSecond) || framesPerSecond < 0.5 || framesPerSecond > 1000.0) {
        return std::nullopt;
    }
    // 29.97 is 30 over 1.001, and 30 the whole number nearest to it.
    const double whole = std::round(framesPerSecond);
    return FrameRate{.counted = static_cast<std::int32_t>(whole),
                     .isOver1001 = std::abs(framesPerSecond - whole / 1.001) < std::abs(framesPerSecond - whole)};
}

std::optional<Timecode> Timecode::parsed(const QString &text, double framesPerSecond)
{
    static const QRegularExpression form(u"^(\\d\\d):(\\d\\d):(\\d\\d)([:;.])(\\d{2,3})$"_s);
    const QRegularExpressionMatch match = form.match(text.trimmed());
    const auto rate = FrameRate::nearest(framesPerSecond);
    if (!match.hasMatch() || !rate) {
        return std::nullopt;
    }
    const std::int64_t hours = match.captured(1).toLongLong();
    const std::int64_t minutes = match.captured(2).toLongLong();
    const std::int64_t seconds = match.captured(3).toLongLong();
    const std::int64_t frames = match.captured(5).toLongLong();
    // Drop frame skips two numbers of every minute but each tenth at 30 a second, four at 60; no other rate has it.
    const bool isDropFrame = match.captured(4) != u":"_s && rate->counted % 30 == 0;
    const std::int64_t dropped = isDropFrame ? rate->counted / 15 : 0;
    const bool isSkipped = seconds == 0 && frames < dropped && minutes % 10 != 0;
    if (hours > 23 || minutes > 59 || seconds > 59 || frames >= rate->counted || isSkipped) {
        return std::nullopt;
    }
    const std::int64_t allMinutes = hours * 60 + minutes;
    const std::int64_t number = (allMinutes * 60 + seconds) * rate->counted + frames;
    return Timecode{
        .frame = number - dropped * (allMinutes - allMinutes / 10), .rate = *rate, .isDropFrame = isDropFrame};
}

QString Timecode::rationalTime(std::int32_t scale) const
{
    if (frame == 0) {
        return u"0s"_s;
    }
    const std::int64_t ticks = frame * rate.value();
    std::int64_t scaled = 0;
    if (scale > 0 && !__builtin_mul_overflow(ticks, static_cast<std::int64_t>(scale), &scaled) &&
        scaled % rate.scale() == 0) {
        return u"%1/%2s"_s.arg(scaled / rate.scale()).arg(scale);
    }
    return u"%1/%2s"_s.arg(ticks).arg(rate.scale());
}

QString timecodeText(std::int64_t frames, FrameRate rate)
{
    const auto two = [](std::int64_t number) { return QString::number(number).rightJustified(2, u'0'); };
    const std::int64_t seconds = frames / rate.counted;
    return two(seconds / 3600) + u':' + two(seconds / 60 % 60) + u':' + two(seconds % 60) + u':' +
           two(frames % rate.counted);
}

} // namespace larkspan
