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
    // These and key() return once the program has handled what they send; what follows from it may take longer.
    static void click(const QQuickItem &item);
    static void rightClick(const QQuickItem &item);
    static void doubleClick(const QQuickItem &item);
    // Moves the pointer over the screen as a hand does.
    static void glide(QPoint from, QPoint to);
    // Presses at one point of the screen, moves to another as a hand does, and lets go.
    static void drag(QPoint from, QPoint to);
    // Keys by xdotool's names: "Tab", "Return", "shift+Tab".
    static void key(const QString &name);
    // Letters, one key each.
    static void type(const QString &text);
    // Holds a key down until the window has had so many repeats of it.
    static void hold(const QString &name, int repeats);
    // Drags files or addresses from another program's window, or a text after "--text", and drops them on an item.
    // False if the drop was refused.
    [[nodiscard]] static bool drop(const QStringList &what, const QQuickItem &onto);
    // The same with files that are to be taken; throws if they aren't.
    static void dragFiles(const QList<std::filesystem::path> &files, const QQuickItem &onto);
    // Has the desktop show everything at that many pixels to a point, as its settings would.
    static void setScale(double scale);

private:
    static void press(const QQuickItem &item, const QStringList &buttons, int releases);
    static void xdotool(const QStringList &arguments);
};

} // namespace larkspan::test
