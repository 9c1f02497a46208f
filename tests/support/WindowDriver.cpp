#include "tests/support/WindowDriver.h"

#include <stdexcept>

#include <QtCore/QPointer>

#include "tests/support/Items.h"
#include "tests/support/WaitUntil.h"

namespace larkspan::test {

QQuickItem &WindowDriver::shown(const QString &text) const
{
    return awaitAtRest(
        driven(), [&] { return findShown(searched(), text); }, text);
}

QQuickItem &WindowDriver::control(const QString &label) const
{
    return awaitAtRest(
        driven(), [&] { return findLabelled(searched(), label); }, label);
}

bool WindowDriver::isShown(const QString &text) const
{
    return findShown(searched(), text) != nullptr;
}

bool WindowDriver::shows(const QString &text) const
{
    return waitUntil([&] { return isShown(text); });
}

bool WindowDriver::goes(const QString &text) const
{
    return waitUntil([&] { return !isShown(text); });
}

QString WindowDriver::focusedText() const
{
    const QQuickItem *item = driven().activeFocusItem();
    return item ? item->property("text").toString() : QString();
}

bool WindowDriver::hasKeyboard(const QString &text) const
{
    return waitUntil([&] { return driven().activeFocusItem() != nullptr && focusedText() == text; });
}

void WindowDriver::choose(const QString &label, const QString &choice)
{
    const QQuickItem &dropdown = control(label);
    const QPointer popup = dropdown.property("popup").value<QObject *>();
    auto *list = popup->property("contentItem").value<QQuickItem *>();
    press(dropdown);
    if (!waitUntil([&] { return popup->property("opened").toBool() && findShown(list, choice) != nullptr; })) {
        throw std::runtime_error("not offered: " + choice.toStdString());
    }
    press(*findShown(list, choice));
    // It may go with what it was the choice for.
    if (!waitUntil([&] { return popup.isNull() || !popup->property("visible").toBool(); })) {
        throw std::runtime_error("the list stays open: " + label.toStdString());
    }
}

} // namespace larkspan::test
