#pragma once

#include <memory>

#include <QtCore/QPointer>
#include <QtQuick/QQuickFramebufferObject>

#include "screens/preview/ClipPlayer.h"

namespace larkspan {

class FrameRelay;

// Shows a player's pictures, whole and with their own aspect, as large as they fit. In a window that isn't drawn with
// OpenGL it stays empty, and the player plays its sound alone.
class PlayerView : public QQuickFramebufferObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(larkspan::ClipPlayer *player READ player WRITE setPlayer NOTIFY playerChanged REQUIRED)
    // True once there is a picture to be seen.
    Q_PROPERTY(bool drawn READ isDrawn NOTIFY drawnChanged)

public:
    explicit PlayerView(QQuickItem *parent = nullptr);

    [[nodiscard]] ClipPlayer *player() const { return m_player; }
    void setPlayer(ClipPlayer *player);
    [[nodiscard]] bool isDrawn() const { return m_isDrawn; }

    [[nodiscard]] Renderer *createRenderer() const override;

Q_SIGNALS:
    void playerChanged();
    void drawnChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    [[nodiscard]] bool canDraw() const;
    void begin();
    void setDrawn(bool drawn);

    QPointer<ClipPlayer> m_player;
    const std::shared_ptr<FrameRelay> m_relay;
    bool m_isDrawn = false;
};

} // namespace larkspan
