#pragma once

#include <memory>

#include <QtGui/QImage>

#include "classify/media/PictureGeometry.h"

struct AVFrame;
struct SwsContext;

namespace larkspan {

// Makes decoded pictures into small upright images. One per clip and thread; keeps its tables from frame to frame.
class FrameScaler
{
public:
    // maxDimension: the longest side of an image, in pixels, at least 1.
    FrameScaler(const PictureGeometry &geometry, int maxDimension);
    ~FrameScaler();
    FrameScaler(const FrameScaler &) = delete;
    FrameScaler &operator=(const FrameScaler &) = delete;

    // Null if the picture has a form that can't be read.
    [[nodiscard]] QImage image(const AVFrame &frame);

private:
    bool prepare(const AVFrame &frame, bool highDynamicRange);

    QSize m_size; // before the turn
    QuarterTurn m_turn;
    SwsContext *m_context = nullptr;
};

} // namespace larkspan
