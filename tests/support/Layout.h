#pragma once

#include <set>
#include <string>
#include <vector>

#include <QtQuick/QQuickWindow>

namespace larkspan::test {

// Returns the parts of a window that nobody can read or press, a sentence each: a text or a control that reaches
// out of the window, a text that is cut short though it isn't among those that may be, two texts or two controls of
// one layer that lie over each other. What is scrolled out of sight or disabled doesn't count.
std::vector<std::string> layoutFaults(QQuickWindow &window, const std::set<QString> &mayBeElided = {});

// Round rectangles that don't take their corners from LKRectangle, one sentence each, hidden ones included.
std::vector<std::string> strangeCorners(const QQuickItem &root);

// Returns the place and opacity of all that is read or pressed, but for clocks. The same twice: nothing moves.
std::string layoutOf(QQuickWindow &window);

} // namespace larkspan::test
