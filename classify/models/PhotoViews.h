#pragma once

#include <cstdint>

#include <QtCore/QString>
#include <QtGui/QImage>

namespace larkspan {

// How a moving camera would have taken a photo, for training: the same photo and number always give the same view.

// View 0 is the photo as it is; the first two after it are framed as a clip of a shoot is (16:9, hardly any zoom), the
// rest is cropped, tilted, lit, blurred and compressed by chance. At most 448 pixels on the long side.
[[nodiscard]] QImage viewOfPhoto(const QImage &photo, std::uint32_t seed, int number);

// A frame that shows nothing: even, graded, noise, stripes or a cap's darkness, by the number.
[[nodiscard]] QImage emptyFrame(int number);

} // namespace larkspan
