#pragma once

#include <string>

#include <QtCore/QRect>
#include <QtGui/QImage>

namespace larkspan::test {

// The difference of two pictures. A pixel differs when a channel is off by more than channelTolerance, which lets
// roundings pass; pictures are alike with up to pixelTolerance of such pixels, which is less than the edge of the
// smallest thing that moves by two pixels.
struct PictureDifference
{
    static constexpr int channelTolerance = 2; // of 255
    static constexpr int pixelTolerance = 8;

    bool sameSize = true;
    int pixels = 0;
    int largest = 0; // of one channel
    QRect where;     // holds them all

    [[nodiscard]] bool isAlike() const { return sameSize && pixels <= pixelTolerance; }
};

[[nodiscard]] PictureDifference compare(const QImage &one, const QImage &other);

// Fails the test unless the drawn picture is like the stored one of this name. With LARKSPAN_RENEW_PICTURES=1 in the
// environment it is stored instead: run the test so after a change that is meant, look at what git then shows, and
// commit it with the change.
void expectPicture(const QImage &drawn, const QString &name);

// The stored picture; null when there is none.
[[nodiscard]] QImage storedPicture(const QString &name);

} // namespace larkspan::test
