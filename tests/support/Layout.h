#pragma once

#include <set>
#include <string>
#include <vector>

#include <QtQuick/QQuickWindow>

namespace larkspan::test {

// What a window shows that nobody can read or press as it stands, one sentence each: a text or a control that reaches
// out of the window, a text that is cut short though it isn't among those that may be, two texts or two controls of
// one layer that lie over each other. What is scrolled out of sight or disabled doesn't count.
std::vector<std::string> layoutFaults(QQuickWindow &window, const std::set<QString> &mayBeElided = {});

// Round rectangles that don't take their corners from LKRectangle, one sentence each, hidden ones included.
std::vector<std::string> strangeCorners(const QQuickItem &root);

// Where everything to read or press stands, and how opaque it is, but for clocks. The same twice: nothing moves.
std::string layoutOf(QQuickWindow &window);

} // namespace larkspan::test
