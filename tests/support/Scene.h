#pragma once

#include <memory>
#include <string>

#include <QtQml/QQmlEngine>
#include <QtQuick/QQuickWindow>

#include "tests/support/Items.h"

namespace larkspan::test {

// A window of its own around one QML document, shown and exposed, so that events reach it as they do in the program.
class Scene
{
public:
    // Fails the test when the document doesn't load.
    explicit Scene(const std::string &qml, const QVariantMap &properties = {}, QSize size = {600, 400});
    ~Scene();

    QQmlEngine &engine() { return m_engine; }
    QQuickWindow &window() const { return *m_window; }
    QQuickItem *root() const { return m_root; }

    // By mouse, in the middle of the control or text that reads so; by key, to what has the focus.
    void click(const QString &text);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    // Until so many frames have been drawn, whether anything changes in them or not.
    void drawFrames(int count);

private:
    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    QQuickItem *m_root = nullptr;
};

} // namespace larkspan::test
