#pragma once

#include <filesystem>

#include <QtCore/QProcess>
#include <QtCore/QStringList>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>

namespace larkspan::test {

// The pointer and the keyboard of the display itself: what is done here goes through the display server and the window
// manager to the window, as from a person's hand. Needs a display (script/with-display) and the program xdotool.
class Desktop
{
public:
    // Waits until the window is shown and has the keyboard. False if it never is.
    [[nodiscard]] static bool awaitWindow(QQuickWindow &window);

    static void moveTo(const QQuickItem &item);
    static void click(const QQuickItem &item);
    static void doubleClick(const QQuickItem &item);
    // Presses at one point of the screen, moves to another as a hand does, and lets go.
    static void drag(QPoint from, QPoint to);
    // Keys by xdotool's names: "Tab", "Return", "shift+Tab".
    static void key(const QString &name);
    // Drags items from another program's window and drops them on an item.
    static void dragFiles(const QList<std::filesystem::path> &files, const QQuickItem &onto);

private:
    static void xdotool(const QStringList &arguments);
};

} // namespace larkspan::test
