#include "tests/support/Layout.h"

#include <sstream>

#include <QtCore/QRegularExpression>
#include <QtQuick/QQuickItem>

namespace larkspan::test {

namespace {

// Something to read or to press, where it can be seen.
struct Shown
{
    const QQuickItem *item = nullptr;
    const QQuickItem *layer = nullptr; // the popup that it belongs to, or the window's content
    QRectF whole;                      // in the window
    QRectF seen;                       // the part of it that nothing scrolls or clips away
    QString text;
    bool isText = false;
    double opacity = 1.0;
};

bool isKind(const QQuickItem *item, const char *name)
{
    return item->inherits(name);
}

// NOLINTNEXTLINE(misc-no-recursion): a window is some levels deep
void collect(const QQuickItem *item, const QQuickItem *layer, QRectF clip, double opacity, std::vector<Shown> &found)
{
    opacity *= item->opacity();
    if (!item->isVisible() || opacity <= 0.0) {
        return;
    }
    if (isKind(item, "QQuickPopupItem")) {
        layer = item;
    }
    const bool isField = isKind(item, "QQuickTextInput");
    const bool isText = isField || isKind(item, "QQuickText");
    const bool isControl = isKind(item, "QQuickAbstractButton") || isKind(item, "QQuickComboBox");
    const QString text = item->property("text").toString();
    if (item->isEnabled() && (isText ? !text.isEmpty() : isControl)) {
        QRectF own(QPointF(), item->size());
        if (isField) { // its text stands in the middle of it
            const double height = item->property("contentHeight").toDouble();
            own = QRectF(0, (item->height() - height) / 2, item->width(), height);
        } else if (isText) {
            own = item->boundingRect();
        }
        const QRectF whole = item->mapRectToScene(own);
        const QRectF seen = whole.intersected(clip);
        if (!seen.isEmpty()) {
            found.push_back({item, layer, whole, seen, text, isText, opacity});
        }
    }
    if (item->clip()) {
        clip = clip.intersected(item->mapRectToScene(QRectF(QPointF(), item->size())));
    }
    for (const QQuickItem *child : item->childItems()) {
        collect(child, layer, clip, opacity, found);
    }
}

std::vector<Shown> shownIn(const QQuickWindow &window)
{
    std::vector<Shown> found;
    constexpr double far = 1e6;
    collect(window.contentItem(), window.contentItem(), {-far, -far, 2 * far, 2 * far}, 1.0, found);
    return found;
}

std::string describe(const Shown &shown)
{
    std::ostringstream text;
    text << (shown.isText ? "the text \"" : "the control \"") << shown.text.toStdString() << "\" at " << shown.whole.x()
         << ", " << shown.whole.y() << ", " << shown.whole.width() << " by " << shown.whole.height();
    return text.str();
}

bool isWithin(const QQuickItem *item, const QQuickItem *other)
{
    return item == other || other->isAncestorOf(item);
}

} // namespace

// NOLINTNEXTLINE(misc-no-recursion): a window is some levels deep
std::vector<std::string> strangeCorners(const QQuickItem &root)
{
    std::vector<std::string> faults;
    if (isKind(&root, "QQuickRectangle") && root.property("radius").toDouble() > 0 &&
        !isKind(&root, "larkspan::LKRectangle")) {
        std::ostringstream text;
        text << "a rectangle of radius " << root.property("radius").toDouble() << " in "
             << (root.parentItem() ? root.parentItem()->metaObject()->className() : "the window")
             << " hasn't the house's corners";
        faults.push_back(text.str());
    }
    for (const QQuickItem *child : root.childItems()) {
        const auto below = strangeCorners(*child);
        faults.insert(faults.end(), below.begin(), below.end());
    }
    return faults;
}

std::vector<std::string> layoutFaults(QQuickWindow &window, const std::set<QString> &mayBeElided)
{
    constexpr double slack = 0.5;
    const QRectF area = QRectF(QPointF(), QSizeF(window.size())).adjusted(-slack, -slack, slack, slack);
    const std::vector<Shown> all = shownIn(window);
    std::vector<std::string> faults;
    for (const Shown &shown : all) {
        // A part that is clipped away can be scrolled to, or is meant to run out.
        if (!area.contains(shown.seen)) {
            faults.push_back(describe(shown) + " reaches out of the window");
        }
        if (shown.isText && shown.item->property("truncated").toBool() && !mayBeElided.contains(shown.text)) {
            faults.push_back(describe(shown) + " is cut short");
        }
    }
    for (std::size_t i = 0; i < all.size(); ++i) {
        for (std::size_t j = i + 1; j < all.size(); ++j) {
            const Shown &one = all[i];
            const Shown &other = all[j];
            if (one.isText != other.isText || one.layer != other.layer || isWithin(one.item, other.item) ||
                isWithin(other.item, one.item)) {
                continue;
            }
            const QRectF common = one.seen.intersected(other.seen);
            if (common.width() > 1 && common.height() > 1) {
                faults.push_back(describe(one) + " lies over " + describe(other));
            }
        }
    }
    return faults;
}

std::string layoutOf(QQuickWindow &window)
{
    std::ostringstream layout;
    static const QRegularExpression clock(QStringLiteral("^[0-9:.hms ]+$")); // which is never at rest
    for (const Shown &shown : shownIn(window)) {
        if (clock.match(shown.text).hasMatch()) {
            continue;
        }
        layout << describe(shown) << ' ' << shown.opacity << '\n';
    }
    return layout.str();
}

} // namespace larkspan::test
