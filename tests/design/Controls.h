#pragma once

#include <gtest/gtest.h>
#include <QtGui/QAccessible>
#include <QtQuick/QQuickItem>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include "design/LK.h"
#include "tests/support/Scene.h"
#include "tests/support/WaitUntil.h"

// Helpers that the tests of the controls share.
namespace larkspan::test {

// A document of one opaque area with the body in it.
inline std::string document(const std::string &body)
{
    return "import QtQuick\nimport Larkspan.Design\nRectangle { id: page; color: 'white'; width: 600; height: 400\n" +
           body + "\n}";
}

inline QQuickItem *partOf(const QQuickItem *control, const char *part)
{
    return control->property(part).value<QQuickItem *>();
}

inline QColor colorOf(const QQuickItem *item)
{
    return item->property("color").value<QColor>();
}

inline QColor fillOf(const QQuickItem *control)
{
    return colorOf(partOf(control, "background"));
}

// A colour that moves has arrived when it is this one.
[[nodiscard]] inline bool becomes(const QQuickItem *item, const QColor &color)
{
    return waitUntil([&] { return colorOf(item) == color; });
}

[[nodiscard]] inline bool fillBecomes(const QQuickItem *control, const QColor &color)
{
    return becomes(partOf(control, "background"), color);
}

// Returns an item as assistive technology sees it.
inline QAccessibleInterface *accessible(QQuickItem *item)
{
    return QAccessible::queryAccessibleInterface(item);
}

inline QString accessibleName(QQuickItem *item)
{
    return accessible(item)->text(QAccessible::Name);
}

// As the type scale says it, whatever the display's resolution.
[[nodiscard]] inline bool hasFont(const QQuickItem *text, double points, int weight)
{
    return text->property("font").value<QFont>() == LK::instance().font(points, weight);
}

// Sets the theme for as long as it lives, then dark again.
class Themed
{
public:
    explicit Themed(LK::Theme theme) { LK::instance().setTheme(theme); }
    ~Themed() { LK::instance().setTheme(LK::Theme::Dark); }
    Themed(const Themed &) = delete;
    Themed &operator=(const Themed &) = delete;
};

} // namespace larkspan::test
