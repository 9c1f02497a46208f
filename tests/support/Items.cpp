#include "tests/support/Items.h"

#include <optional>
#include <stdexcept>

#include "tests/support/WaitUntil.h"

namespace larkspan::test {

namespace {

template <typename Matches>
QQuickItem *findItem(QQuickItem *root, const Matches &matches)
{
    if (!root) {
        return nullptr;
    }
    if (matches(root)) {
        return root;
    }
    for (QQuickItem *child : root->childItems()) {
        if (QQuickItem *found = findItem(child, matches)) {
            return found;
        }
    }
    return nullptr;
}

} // namespace

QQuickItem *findShown(QQuickItem *root, const QString &text)
{
    return findItem(root, [&text](const QQuickItem *item) {
        return item->isVisible() && item->property("text").toString() == text;
    });
}

QQuickItem *findLabelled(QQuickItem *root, const QString &label)
{
    return findItem(root, [&label](const QQuickItem *item) {
        return item->isVisible() && item->activeFocusOnTab() && item->property("label").toString() == label;
    });
}

QQuickItem *findNamed(QQuickItem *root, const QString &objectName)
{
    return findItem(root, [&objectName](const QQuickItem *item) { return item->objectName() == objectName; });
}

QQuickItem &awaitAtRest(QQuickWindow &window, const std::function<QQuickItem *()> &find, const QString &name)
{
    bool isDrawn = false;
    const auto drawn = QObject::connect(&window, &QQuickWindow::afterAnimating, [&isDrawn] { isDrawn = true; });
    QQuickItem *item = nullptr;
    std::optional<QPointF> last;
    const bool rests = waitUntil([&] {
        window.update();
        if (!std::exchange(isDrawn, false)) {
            return false;
        }
        item = find();
        const auto now = item ? std::optional(item->mapToScene({})) : std::nullopt;
        return std::exchange(last, now) == now && item != nullptr;
    });
    QObject::disconnect(drawn);
    if (!rests) {
        throw std::runtime_error("not shown: " + name.toStdString());
    }
    return *item;
}

QPoint middleOf(const QQuickItem *item)
{
    return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
}

} // namespace larkspan::test
