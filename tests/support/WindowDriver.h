#pragma once

#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>

namespace larkspan::test {

// Finds what a window shows as a person does, by what it reads, and waits for it. Fixtures that show a window inherit
// it and say which one it is, and how it is clicked: with the display's pointer, or by an event that is sent to it.
class WindowDriver
{
public:
    virtual ~WindowDriver() = default;
    WindowDriver(const WindowDriver &) = delete;
    WindowDriver &operator=(const WindowDriver &) = delete;

protected:
    WindowDriver() = default;

    [[nodiscard]] virtual QQuickWindow &driven() const = 0;
    // The item that is searched, with everything in it: all of the window, popups included, unless a fixture has less.
    [[nodiscard]] virtual QQuickItem *searched() const { return driven().contentItem(); }
    // Clicks in the middle of an item.
    virtual void press(const QQuickItem &item) = 0;

    // Return what reads so, and the control of that label which takes focus, once it is at rest. They throw if it
    // doesn't come up.
    QQuickItem &shown(const QString &text) const;
    QQuickItem &control(const QString &label) const;

    [[nodiscard]] bool isShown(const QString &text) const;
    // Wait until a text is shown, and until it no longer is.
    [[nodiscard]] bool shows(const QString &text) const;
    [[nodiscard]] bool goes(const QString &text) const;

    // Returns the text of the item that has focus: the title of a control, the content of a field. "" without one.
    [[nodiscard]] QString focusedText() const;
    // Waits until that is this text.
    [[nodiscard]] bool hasKeyboard(const QString &text) const;

    // Chooses from the list of a dropdown, and waits until the list has closed.
    void choose(const QString &label, const QString &choice);
};

} // namespace larkspan::test
