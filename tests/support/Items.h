#pragma once

#include <functional>

#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>

namespace larkspan::test {

// The first shown item below root that reads as the text: a control of that title or label, or a text of that content.
// Null when there is none; hidden ones don't count.
QQuickItem *findShown(QQuickItem *root, const QString &text);
// The first shown control below root that takes the keyboard and that assistive technology knows by this label.
QQuickItem *findLabelled(QQuickItem *root, const QString &label);
// The first item below root with this object name, hidden ones included.
QQuickItem *findNamed(QQuickItem *root, const QString &objectName);
// Waits until what is looked for is there and stays where it is from one frame of the window to the next: what has just
// come up, or moved up, is laid out with a frame. Throws, with the name, if it never does.
QQuickItem &awaitAtRest(QQuickWindow &window, const std::function<QQuickItem *()> &find, const QString &name);
// Returns the middle of an item, in the window.
QPoint middleOf(const QQuickItem *item);

} // namespace larkspan::test
