#include "core/clips/Thumbnail.h"

#include <atomic>

#include <QtCore/QBuffer>
#include <QtGui/QImageReader>
#include <QtGui/QImageWriter>

namespace larkspan {

namespace {

constexpr char format[] = "jpg";

QByteArray encoded(const QImage &frame, int quality)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.setQuality(quality);
    return writer.write(frame) ? bytes : QByteArray();
}

QByteArray encodedWithin(QImage frame, qsizetype mostBytes)
{
    constexpr int qualities[] = {85, 70, 50, 30};
    while (!frame.isNull()) {
        for (const int quality : qualities) {
            QByteArray bytes = encoded(frame, quality);
            if (bytes.size() <= mostBytes) {
                return bytes;
            }
        }
        frame = frame.scaled(frame.size() / 2, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    return {};
}

} // namespace

Thumbnail::Thumbnail(const QImage &frame)
{
    static std::atomic<quint64> made = 0;
    m_jpeg = encodedWithin(frame, mostBytes);
    if (!m_jpeg.isEmpty()) {
        m_size = frame.size();
        m_key = ++made;
    }
}

QImage Thumbnail::stretchedTo(QSize size) const
{
    if (isNull()) {
        return {};
    }
    QByteArray bytes = m_jpeg;
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer, format);
    if (!size.isEmpty()) {
        reader.setScaledSize(size); // the decoder itself leaves out most of what a smaller picture doesn't show
    }
    return reader.read();
}

} // namespace larkspan
