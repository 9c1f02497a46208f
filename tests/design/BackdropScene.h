#pragma once

#include "design/Backdrop.h"
#include "design/LK.h"
#include "tests/support/Scene.h"

namespace larkspan::test {

// The size of a new window of the program.
inline constexpr QSize usual(1180, 790);

// A background of the house in a window, on a clock of ours.
class BackdropScene
{
public:
    BackdropScene(const std::string &body, QSize size)
        : m_scene("import QtQuick\nimport Larkspan.Design\n" + body, {}, size)
        , m_backdrop(m_scene.root()->findChild<Backdrop *>())
    {
        m_backdrop->setClock([this] { return time; });
    }
    ~BackdropScene()
    {
        LK::instance().setBoringMode(false);
        LK::instance().setTheme(LK::Theme::Dark);
    }

    template <typename Canvas>
    Canvas &canvas()
    {
        return *qobject_cast<Canvas *>(m_backdrop);
    }
    QQuickWindow &window() { return m_scene.window(); }
    Scene &scene() { return m_scene; }

    // Returns a picture of the window, and keeps it for people where LARKSPAN_PICTURES names a folder.
    QImage picture(const QString &name)
    {
        m_backdrop->update();
        QImage shown = window().grabWindow();
        if (const QString folder = qEnvironmentVariable("LARKSPAN_PICTURES"); !folder.isEmpty()) {
            shown.save(folder + QStringLiteral("/%1.png").arg(name));
        }
        return shown;
    }

    double time = 0.0;

private:
    Scene m_scene;
    Backdrop *m_backdrop;
};

} // namespace larkspan::test
