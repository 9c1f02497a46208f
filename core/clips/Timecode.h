#pragma once

#include <cstdint>
#include <optional>

#include <QtCore/QString>

namespace larkspan {

// A rate that cameras and editors count by: a whole number of frames a second, or that over 1.001.
struct FrameRate
{
    std::int32_t counted = 25; // frames that a timecode counts in a second: 30 at 29.97
    bool isOver1001 = false;   // 29.97 and not 30

    // The one nearest to a rate that a file gives roughly; none outside 0.5 to 1000 frames a second.
    static std::optional<FrameRate> nearest(double framesPerSecond);

    // One frame lasts value / scale seconds.
    std::int64_t value() const { return isOver1001 ? 1001 : 1; }
    std::int32_t scale() const { return isOver1001 ? counted * 1000 : counted; }
    double framesPerSecond() const { return scale() / static_cast<double>(value()); }

    friend auto operator<=>(const FrameRate &, const FrameRate &) = default;
};

// The time that a camera counted up to a clip's first frame, exact in frames.
struct Timecode
{
    std::int64_t frame = 0; // frames since 00:00:00:00; the numbers that drop frame skips don't count
    FrameRate rate;
    bool isDropFrame = false;

    // From "HH:MM:SS:FF", with ";" or "." before the frames for drop frame. framesPerSecond: roughly, as the file has
    // it. None for text that is no time of day at this rate.
    static std::optional<Timecode> parsed(const QString &text, double framesPerSecond);

    // Seconds as a fraction: over the given scale where that is exact, else over the rate's own. "0s" for midnight.
    QString rationalTime(std::int32_t scale) const;

    friend bool operator==(const Timecode &, const Timecode &) = default;
};

// A number of frames as "HH:MM:SS:FF", no numbers skipped.
QString timecodeText(std::int64_t frames, FrameRate rate);

} // namespace larkspan
