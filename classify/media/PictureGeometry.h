#pragma once

#include <optional>

#include <QtCore/QSizeF>

namespace larkspan {

class MediaFile;

// A turn by quarters, mirroring included, as a map of the axes: x' = a x + c y, y' = b x + d y, y pointing down.
struct QuarterTurn
{
    int a = 1;
    int b = 0;
    int c = 0;
    int d = 1;

    bool swapsSides() const { return a == 0; }
    friend bool operator==(const QuarterTurn &, const QuarterTurn &) = default;
};

// The sizes of a track's picture. Whole pixels, never zero.
struct PictureGeometry
{
    QSizeF naturalSize; // cropped, with square pixels, as the sensor saw it
    QSizeF displaySize; // as it is shown, after the track's transform
    QuarterTurn turn;   // the transform as the nearest turn by quarters

    friend bool operator==(const PictureGeometry &, const PictureGeometry &) = default;
};

// None if the file has no video track, or its header gives no believable size.
std::optional<PictureGeometry> pictureGeometry(const MediaFile &file);

} // namespace larkspan
