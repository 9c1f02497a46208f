#pragma once

#include <QtGui/QImage>

#include "design/KineticGrid.h"

namespace larkspan::test {

// A picture of the window's background alone.
QImage emptyPicture(QSize size, double scale = 1.0);

// The parts that a painting of the grid leaves out.
struct Without
{
    bool dots = false;
    bool rings = false;
};

// Plain paintings of the backgrounds' arithmetic.
QImage paintedGrid(const KineticGrid &grid, QSize size, double now, double scale = 1.0, Without without = {});
QImage paintedStarlight(double seconds, QSize size);

struct Difference
{
    double mean = 0.0; // of all channels of all pixels, 0 to 255
    int greatest = 0;
};

Difference difference(const QImage &a, const QImage &b);
// Expects a picture of the display to be as it was painted, but for the edges of its shapes.
void expectAlike(const QImage &shown, const QImage &painted);

} // namespace larkspan::test
