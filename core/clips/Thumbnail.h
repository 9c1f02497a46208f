#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QSize>
#include <QtGui/QImage>

namespace larkspan {

// A clip's still picture. It is kept as JPEG, so that those of a shoot with thousands of clips fit into memory, and
// decoded where it is shown. Never changed once made; copies share it, on any thread.
class Thumbnail
{
public:
    // The size of the largest one, whatever it shows.
    static constexpr qsizetype mostBytes = qsizetype(64) * 1024;

    // None.
    Thumbnail() = default;
    // Makes the thumbnail of a frame; an empty one of a null frame.
    explicit Thumbnail(const QImage &frame);

    [[nodiscard]] bool isNull() const { return m_jpeg.isEmpty(); }
    [[nodiscard]] QSize size() const { return m_size; }
    [[nodiscard]] qsizetype byteCount() const { return m_jpeg.size(); }
    // Tells pictures apart within one run; 0 for none.
    [[nodiscard]] quint64 key() const { return m_key; }

    // The picture stretched to this size, whatever its aspect; as it is for an empty size, null for none.
    [[nodiscard]] QImage stretchedTo(QSize size) const;

private:
    QByteArray m_jpeg;
    QSize m_size;
    quint64 m_key = 0;
};

} // namespace larkspan
