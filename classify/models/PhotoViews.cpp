#include "classify/models/PhotoViews.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <random>

#include <QtCore/QBuffer>
#include <QtGui/QPainter>

namespace larkspan {

namespace {

constexpr int longSide = 448; // pixels, as the sampler hands frames on
constexpr int plainShootViews = 2;

// The standard's distributions differ between libraries; these don't.
class Chance
{
public:
    explicit Chance(std::uint32_t seed) : m_engine(seed) {}

    double between(double low, double high)
    {
        return low + (high - low) * (static_cast<double>(m_engine()) / 4294967296.0);
    }
    int below(int count) { return std::min(count - 1, static_cast<int>(between(0.0, count))); }
    bool happens(double share) { return between(0.0, 1.0) < share; }

private:
    std::mt19937 m_engine;
};

QSize frameSize(double aspect)
{
    return aspect >= 1.0 ? QSize(longSide, std::max(1, static_cast<int>(std::lround(longSide / aspect))))
                         : QSize(std::max(1, static_cast<int>(std::lround(longSide * aspect))), longSide);
}

double framingAspect(const QImage &photo, Chance &chance)
{
    const double draw = chance.between(0.0, 1.0);
    if (draw < 0.6) {
        return 16.0 / 9.0;
    }
    if (draw < 0.75) {
        return 9.0 / 16.0;
    }
    return draw < 0.85 ? 4.0 / 3.0 : static_cast<double>(photo.width()) / photo.height();
}

// The part of the photo with the aspect given, its sides by the zoom smaller than the largest possible, turned by the
// angle as far as the photo's edges allow.
QImage framed(const QImage &photo, double aspect, double zoom, double degrees, QPointF place)
{
    double width = photo.width();
    double height = width / aspect;
    if (height > photo.height()) {
        height = photo.height();
        width = height * aspect;
    }
    width /= zoom;
    height /= zoom;
    // The turned frame's outline must lie within the photo.
    const double angle = degrees * std::numbers::pi / 180.0;
    const double outlineWidth = width * std::cos(angle) + height * std::abs(std::sin(angle));
    const double outlineHeight = height * std::cos(angle) + width * std::abs(std::sin(angle));
    const double fit = std::min({1.0, photo.width() / outlineWidth, photo.height() / outlineHeight});
    width *= fit;
    height *= fit;
    const double left = outlineWidth * fit / 2 + (photo.width() - outlineWidth * fit) * place.x();
    const double top = outlineHeight * fit / 2 + (photo.height() - outlineHeight * fit) * place.y();

    const QSize size = frameSize(aspect);
    // Halving first keeps the fine lines of a large photo from flickering, as the sampler's scaling does.
    QImage source = photo;
    double scale = size.width() / width;
    double shrink = 1.0;
    if (scale < 0.7) {
        shrink = scale * 1.2;
        source = photo.scaled(static_cast<int>(photo.width() * shrink), static_cast<int>(photo.height() * shrink),
                              Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        scale /= shrink;
    }
    QImage frame(size, QImage::Format_RGB32);
    frame.fill(Qt::black);
    QPainter painter(&frame);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.translate(size.width() / 2.0, size.height() / 2.0);
    painter.rotate(degrees);
    painter.scale(scale, scale);
    painter.translate(-left * shrink, -top * shrink);
    painter.drawImage(0, 0, source);
    return frame;
}

// Exposure, contrast and white balance, each channel through a table of its own.
void relight(QImage &frame, const std::array<double, 3> &gains, double gamma)
{
    std::array<std::array<int, 256>, 3> tables;
    for (std::size_t channel = 0; channel < 3; ++channel) {
        for (std::size_t value = 0; value < 256; ++value) {
            const double lit = std::pow(static_cast<double>(value) / 255.0, gamma) * gains[channel];
            tables[channel][value] = std::clamp(static_cast<int>(std::lround(lit * 255.0)), 0, 255);
        }
    }
    for (int y = 0; y < frame.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(frame.scanLine(y));
        for (int x = 0; x < frame.width(); ++x) {
            const auto at = [&](std::size_t channel, int value) {
                return tables[channel][static_cast<std::size_t>(value)];
            };
            line[x] = qRgb(at(0, qRed(line[x])), at(1, qGreen(line[x])), at(2, qBlue(line[x])));
        }
    }
}

// The mean along a line of so many pixels, as a camera that pans while the shutter is open.
QImage panned(const QImage &frame, double pixels, double angle)
{
    const int steps = std::max(2, static_cast<int>(std::ceil(pixels)));
    std::vector<std::array<int, 3>> sums(static_cast<std::size_t>(frame.width() * frame.height()));
    for (int step = 0; step < steps; ++step) {
        const double along = pixels * (static_cast<double>(step) / (steps - 1) - 0.5);
        const int right = static_cast<int>(std::lround(along * std::cos(angle)));
        const int down = static_cast<int>(std::lround(along * std::sin(angle)));
        auto sum = sums.begin();
        for (int y = 0; y < frame.height(); ++y) {
            const auto *line =
                reinterpret_cast<const QRgb *>(frame.constScanLine(std::clamp(y + down, 0, frame.height() - 1)));
            for (int x = 0; x < frame.width(); ++x, ++sum) {
                const auto pixel = line[std::clamp(x + right, 0, frame.width() - 1)];
                (*sum)[0] += qRed(pixel);
                (*sum)[1] += qGreen(pixel);
                (*sum)[2] += qBlue(pixel);
            }
        }
    }
    QImage result(frame.size(), QImage::Format_RGB32);
    auto sum = sums.cbegin();
    for (int y = 0; y < frame.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(result.scanLine(y));
        for (int x = 0; x < frame.width(); ++x, ++sum) {
            line[x] = qRgb((*sum)[0] / steps, (*sum)[1] / steps, (*sum)[2] / steps);
        }
    }
    return result;
}

QImage compressed(const QImage &frame, int quality)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    frame.save(&buffer, "JPEG", quality);
    return QImage::fromData(buffer.data(), "JPEG").convertToFormat(QImage::Format_RGB32);
}

QColor anyColor(Chance &chance)
{
    return QColor::fromHsvF(static_cast<float>(chance.between(0.0, 1.0)), static_cast<float>(chance.between(0.0, 1.0)),
                            static_cast<float>(chance.between(0.0, 1.0)));
}

void addNoise(QImage &frame, int strength, bool gray, Chance &chance)
{
    for (int y = 0; y < frame.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(frame.scanLine(y));
        for (int x = 0; x < frame.width(); ++x) {
            const auto stray = [&] { return chance.below(2 * strength + 1) - strength; };
            const int common = stray();
            const auto moved = [&](int value) { return std::clamp(value + (gray ? common : stray()), 0, 255); };
            line[x] = qRgb(moved(qRed(line[x])), moved(qGreen(line[x])), moved(qBlue(line[x])));
        }
    }
}

} // namespace

QImage viewOfPhoto(const QImage &photo, std::uint32_t seed, int number)
{
    if (number == 0 || photo.isNull()) {
        return photo;
    }
    Chance chance(seed * 1000003u + static_cast<std::uint32_t>(number));
    const QPointF place(chance.between(0.0, 1.0), chance.between(0.0, 1.0));
    if (number <= plainShootViews) {
        auto frame = framed(photo, 16.0 / 9.0, chance.between(1.0, 1.18), 0.0, place);
        const double gain = std::exp2(chance.between(-0.15, 0.15));
        relight(frame, {gain, gain, gain}, 1.0);
        return compressed(frame, 70);
    }
    const double aspect = framingAspect(photo, chance);
    const double zoom = std::sqrt(1.0 / chance.between(0.4, 1.0));
    const double tilt = chance.happens(0.5) ? chance.between(-8.0, 8.0) : 0.0;
    auto frame = framed(photo, aspect, zoom, tilt, place);
    const double gain = std::exp2(chance.between(-0.8, 0.6));
    const double warmth = std::exp2(chance.between(-0.25, 0.25));
    relight(frame, {gain * warmth, gain, gain / warmth}, std::exp2(chance.between(-0.4, 0.4)));
    if (chance.happens(0.35)) {
        frame = panned(frame, chance.between(3.0, 16.0), chance.between(0.0, std::numbers::pi));
    }
    return chance.happens(0.6) ? compressed(frame, 20 + chance.below(60)) : frame;
}

QImage emptyFrame(int number)
{
    Chance chance(static_cast<std::uint32_t>(number) * 2654435761u + 17u);
    const std::array shapes{QSize(448, 252), QSize(252, 448), QSize(448, 448), QSize(448, 336)};
    QImage frame(shapes[static_cast<std::size_t>(chance.below(static_cast<int>(shapes.size())))], QImage::Format_RGB32);
    frame.fill(anyColor(chance));
    switch (number % 6) {
    case 0: // one colour, black and white among them
        if (chance.happens(0.4)) {
            frame.fill(chance.happens(0.5) ? Qt::black : Qt::white);
        }
        break;
    case 1: { // from one colour to another
        QPainter painter(&frame);
        QLinearGradient gradient(chance.between(0, frame.width()), 0, chance.between(0, frame.width()), frame.height());
        gradient.setColorAt(0, anyColor(chance));
        gradient.setColorAt(1, anyColor(chance));
        painter.fillRect(frame.rect(), gradient);
        break;
    }
    case 2: // noise alone
        frame.fill(Qt::gray);
        addNoise(frame, 128, chance.happens(0.3), chance);
        break;
    case 3: { // a colour with a sensor's noise
        addNoise(frame, 2 + chance.below(60), chance.happens(0.3), chance);
        break;
    }
    case 4: { // stripes, as a broken file or a test picture shows
        QPainter painter(&frame);
        painter.rotate(chance.below(4) * 30.0);
        const int step = 4 + chance.below(60);
        for (int x = -900; x < 900; x += step) {
            painter.fillRect(x, -900, step / 2, 1800, anyColor(chance));
        }
        break;
    }
    default: { // the dark of a lens cap or a bag, with a gleam
        frame.fill(QColor::fromHsvF(static_cast<float>(chance.between(0.0, 1.0)), 0.4f,
                                    static_cast<float>(chance.between(0.0, 0.12))));
        QPainter painter(&frame);
        QRadialGradient gleam(chance.between(0, frame.width()), chance.between(0, frame.height()),
                              chance.between(20, 300));
        QColor light = anyColor(chance);
        light.setAlpha(60);
        gleam.setColorAt(0, light);
        gleam.setColorAt(1, Qt::transparent);
        painter.fillRect(frame.rect(), gleam);
        addNoise(frame, 1 + chance.below(12), chance.happens(0.5), chance);
        break;
    }
    }
    return chance.happens(0.5) ? compressed(frame, 40 + chance.below(55)) : frame;
}

} // namespace larkspan
