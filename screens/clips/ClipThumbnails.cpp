#include "screens/clips/ClipThumbnails.h"

#include <algorithm>

#include <QtCore/QUrlQuery>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include "design/Corners.h"
#include "screens/bins/BinColors.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

constexpr QSize usualSize(160, 90);

const QString framePath = u"frame/"_s; // then the thumbnail's key
const QString binPath = u"bin/"_s;     // then the bin

// Returns the outline of a picture. With topOnly its lower corners are below the picture, which then has square ones.
QPainterPath outline(const QSizeF &size, double radius, bool topOnly)
{
    return corners::path(QRectF(QPointF(), topOnly ? size + QSizeF(0, 2 * corners::reach * radius) : size), radius);
}

QBrush gradient(const QString &bin, const QSizeF &size)
{
    const auto [first, second] = binGradientColors(bin);
    QLinearGradient colors(0, 0, size.width(), size.height());
    colors.setColorAt(0, first);
    colors.setColorAt(1, second);
    return colors;
}

QImage painted(const QSize &size, const QBrush &content, const QPainterPath &shape)
{
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(content);
    painter.drawPath(shape);
    return picture;
}

// Returns the middle of a picture, which keeps its aspect and fills the size.
QImage filling(const QSize &size, const Thumbnail &thumbnail)
{
    if (thumbnail.isNull() || size.isEmpty()) {
        return thumbnail.stretchedTo(size);
    }
    const QImage whole = thumbnail.stretchedTo(thumbnail.size().scaled(size, Qt::KeepAspectRatioByExpanding));
    return whole.copy(QRect(QPoint((whole.width() - size.width()) / 2, (whole.height() - size.height()) / 2), size));
}

// Returns the part that is to look as through frosted glass; empty for none.
QRect frostedPart(const QUrlQuery &options)
{
    const QStringList numbers = options.queryItemValue(u"frosted"_s).split(u',');
    return numbers.size() == 4 ? QRect(numbers[0].toInt(), numbers[1].toInt(), numbers[2].toInt(), numbers[3].toInt())
                               : QRect();
}

QImage frosted(const QImage &picture, const QRect &part)
{
    constexpr int grain = 8; // pixels
    constexpr double veil = 0.35;
    const QSize coarse((part.width() + grain - 1) / grain, (part.height() + grain - 1) / grain);
    QImage glass = picture.copy(part).scaled(coarse, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    for (int finer = grain / 2; finer >= 1; finer /= 2) { // a single step would show the grain
        const QSize size((part.width() + finer - 1) / finer, (part.height() + finer - 1) / finer);
        glass = glass.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    QPainter(&glass).fillRect(glass.rect(), QColor::fromRgbF(0, 0, 0, veil));
    return glass;
}

} // namespace

QString ClipThumbnails::providerName()
{
    return u"clips"_s;
}

QUrl ClipThumbnails::urlOf(const MediaClip &clip)
{
    const QString path = clip.thumbnail.isNull()
                             ? binPath + QString::fromLatin1(QUrl::toPercentEncoding(clip.primaryBin))
                             : framePath + QString::number(clip.thumbnail.key());
    return QUrl(u"image://%1/%2"_s.arg(providerName(), path));
}

ClipThumbnails::ClipThumbnails(const SortEngine &engine) : QQuickImageProvider(QQuickImageProvider::Image)
{
    connect(&engine, &SortEngine::clipsChanged, this, [this, &engine] { refresh(engine); });
    refresh(engine);
}

QImage ClipThumbnails::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const QString path = id.section(u'?', 0, 0);
    const QUrlQuery options(id.section(u'?', 1));
    const Thumbnail thumbnail = [&] {
        const std::lock_guard lock(m_mutex);
        return m_thumbnails.value(path.startsWith(framePath) ? path.mid(framePath.size()).toULongLong() : 0);
    }();

    // A frame that is asked for in no size is given as it is.
    const QImage frame =
        options.hasQueryItem(u"crop"_s) ? filling(requestedSize, thumbnail) : thumbnail.stretchedTo(requestedSize);
    QSize wanted = !requestedSize.isEmpty() ? requestedSize : frame.isNull() ? usualSize : frame.size();
    QBrush content(frame);
    if (frame.isNull()) {
        const QString bin =
            path.startsWith(binPath) ? QUrl::fromPercentEncoding(path.mid(binPath.size()).toUtf8()) : QString();
        content = gradient(bin, wanted);
    }
    const QRect part = frostedPart(options);
    if (!part.isEmpty() && QRect(QPoint(), wanted).contains(part)) {
        content = QBrush(frosted(painted(wanted, content, outline(wanted, 0, false)), part));
        wanted = part.size();
    }
    if (size) {
        *size = wanted;
    }
    return painted(wanted, content,
                   outline(wanted, options.queryItemValue(u"radius"_s).toDouble(), options.hasQueryItem(u"top"_s)));
}

void ClipThumbnails::refresh(const SortEngine &engine)
{
    // Only this thread changes them, so it may look without the lock. Most edits leave all pictures as they are.
    const auto hasPicture = [](const ClipPtr &clip) { return !clip->thumbnail.isNull(); };
    const auto isKnown = [this, &hasPicture](const ClipPtr &clip) {
        return !hasPicture(clip) || m_thumbnails.contains(clip->thumbnail.key());
    };
    if (std::ranges::count_if(engine.clips(), hasPicture) == m_thumbnails.size() &&
        std::ranges::all_of(engine.clips(), isKnown)) {
        return;
    }
    QHash<quint64, Thumbnail> thumbnails;
    thumbnails.reserve(engine.clipCount());
    for (const ClipPtr &clip : engine.clips()) {
        if (hasPicture(clip)) {
            thumbnails.insert(clip->thumbnail.key(), clip->thumbnail);
        }
    }
    const std::lock_guard lock(m_mutex);
    m_thumbnails.swap(thumbnails);
}

} // namespace larkspan
