#pragma once

#include <mutex>

#include <QtCore/QHash>
#include <QtCore/QUrl>
#include <QtCore/QUuid>
#include <QtQuick/QQuickImageProvider>

#include "core/engine/SortEngine.h"

namespace larkspan {

// Hands the clips' pictures to QML under "image://clips/…": the first frame, or its bin's colours while there is none,
// stretched to the size asked for, or as it is for none. "?radius=8" rounds the corners by so many pixels, "&top" only
// the upper ones. "&crop" fills the size with the frame's middle instead of stretching it. "?frosted=6,70,60,16" gives
// that part alone, as it looks through dark, frosted glass. Follows the engine on the main thread; QML may ask from its
// loading threads. A picture is decoded when it is asked for and dropped with its clip: all that is held of a shoot is
// Thumbnail::mostBytes a clip at most.
class ClipThumbnails : public QQuickImageProvider
{
    Q_OBJECT

public:
    // Under which name the provider is to be added to the QML engine.
    static QString providerName();
    // Returns the URL of a clip's picture for QML; changes when the picture does.
    static QUrl urlOf(const MediaClip &clip);

    // engine: must outlive this.
    explicit ClipThumbnails(const SortEngine &engine);

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;

private:
    void refresh(const SortEngine &engine);

    std::mutex m_mutex;
    QHash<quint64, Thumbnail> m_thumbnails; // by their keys
};

} // namespace larkspan
