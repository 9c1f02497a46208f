#include "screens/preview/PlayerView.h"

#include <QtGui/QOpenGLContext>
#include <QtOpenGL/QOpenGLFramebufferObject>
#include <QtQuick/QQuickOpenGLUtils>
#include <QtQuick/QQuickWindow>
#include <QtQuick/QSGRendererInterface>

#include "screens/preview/PlayerLibrary.h"

namespace larkspan {

// Carries signals from other threads to the item. The threads share it, and may outlive the item.
class FrameRelay : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    void frameReady();              // there is something new to draw; from a thread of the player's
    void contextMade(bool canDraw); // from the render thread, as is the next
    void frameDrawn();
};

namespace {

void *addressOf(void *, const char *name)
{
    QOpenGLContext *context = QOpenGLContext::currentContext();
    return context ? reinterpret_cast<void *>(context->getProcAddress(name)) : nullptr;
}

// Lives on the render thread, where the window's context is current whenever it is called.
class FrameRenderer : public QQuickFramebufferObject::Renderer
{
public:
    explicit FrameRenderer(std::shared_ptr<FrameRelay> relay) : m_relay(std::move(relay)) {}
    ~FrameRenderer() override { dropContext(); }
    FrameRenderer(const FrameRenderer &) = delete;
    FrameRenderer &operator=(const FrameRenderer &) = delete;

    void synchronize(QQuickFramebufferObject *item) override
    {
        const ClipPlayer *player = static_cast<PlayerView *>(item)->player();
        const ClipPlayer::Handle mpv = player ? player->handle() : nullptr;
        if (m_mpv != mpv) {
            dropContext();
            m_mpv = mpv;
        }
    }

    void render() override
    {
        if (m_mpv && !m_context && !m_failed) {
            makeContext();
        }
        if (!m_context) {
            return;
        }
        const bool isNew = (libmpv().renderContextUpdate(m_context) & MPV_RENDER_UPDATE_FRAME) != 0;
        QOpenGLFramebufferObject *target = framebufferObject();
        mpv_opengl_fbo fbo{.fbo = static_cast<int>(target->handle()),
                           .w = target->width(),
                           .h = target->height(),
                           .internal_format = 0};
        int upright = 0;
        int wait = 0; // the window's own frames set the pace
        mpv_render_param parameters[] = {{MPV_RENDER_PARAM_OPENGL_FBO, &fbo},
                                         {MPV_RENDER_PARAM_FLIP_Y, &upright},
                                         {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &wait},
                                         {MPV_RENDER_PARAM_INVALID, nullptr}};
        libmpv().renderContextRender(m_context, parameters);
        QQuickOpenGLUtils::resetOpenGLState();
        if (isNew) {
            Q_EMIT m_relay->frameDrawn();
        }
    }

private:
    void makeContext()
    {
        mpv_opengl_init_params gl{.get_proc_address = addressOf, .get_proc_address_ctx = nullptr};
        mpv_render_param parameters[] = {{MPV_RENDER_PARAM_API_TYPE, const_cast<char *>(MPV_RENDER_API_TYPE_OPENGL)},
                                         {MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &gl},
                                         {MPV_RENDER_PARAM_INVALID, nullptr}};
        m_failed = libmpv().renderContextCreate(&m_context, m_mpv.get(), parameters) < 0;
        if (!m_failed) {
            libmpv().renderContextSetUpdateCallback(
                m_context, [](void *relay) { Q_EMIT static_cast<FrameRelay *>(relay)->frameReady(); }, m_relay.get());
        }
        Q_EMIT m_relay->contextMade(!m_failed);
    }

    void dropContext()
    {
        if (m_context) {
            libmpv().renderContextSetUpdateCallback(m_context, nullptr, nullptr);
            libmpv().renderContextFree(m_context);
            m_context = nullptr;
        }
        m_failed = false;
    }

    const std::shared_ptr<FrameRelay> m_relay;
    ClipPlayer::Handle m_mpv;
    mpv_render_context *m_context = nullptr;
    bool m_failed = false;
};

} // namespace

PlayerView::PlayerView(QQuickItem *parent)
    : QQuickFramebufferObject(parent)
    , m_relay(new FrameRelay, [](FrameRelay *relay) { relay->deleteLater(); })
{
    connect(m_relay.get(), &FrameRelay::frameReady, this, &QQuickItem::update);
    connect(m_relay.get(), &FrameRelay::frameDrawn, this, [this] { setDrawn(true); });
    connect(m_relay.get(), &FrameRelay::contextMade, this, [this](bool canDraw) {
        if (m_player) {
            m_player->pictureReady(canDraw);
        }
    });
}

void PlayerView::setPlayer(ClipPlayer *player)
{
    if (m_player == player) {
        return;
    }
    if (m_player) {
        m_player->disconnect(this);
    }
    m_player = player;
    setDrawn(false);
    if (m_player) {
        connect(m_player, &ClipPlayer::opened, this, &PlayerView::begin);
    }
    begin();
    Q_EMIT playerChanged();
}

QQuickFramebufferObject::Renderer *PlayerView::createRenderer() const
{
    return new FrameRenderer(m_relay);
}

QSGNode *PlayerView::updatePaintNode(QSGNode *node, UpdatePaintNodeData *data)
{
    return canDraw() ? QQuickFramebufferObject::updatePaintNode(node, data) : nullptr;
}

void PlayerView::itemChange(ItemChange change, const ItemChangeData &value)
{
    QQuickFramebufferObject::itemChange(change, value);
    if (change == ItemSceneChange) {
        begin();
    }
}

bool PlayerView::canDraw() const
{
    return window() && window()->rendererInterface()->graphicsApi() == QSGRendererInterface::OpenGL;
}

void PlayerView::begin()
{
    if (!m_player || !m_player->handle() || !window()) {
        return;
    }
    if (canDraw()) {
        update();
    } else {
        m_player->pictureReady(false);
    }
}

void PlayerView::setDrawn(bool drawn)
{
    if (m_isDrawn != drawn) {
        m_isDrawn = drawn;
        Q_EMIT drawnChanged();
    }
}

} // namespace larkspan

#include "PlayerView.moc"
