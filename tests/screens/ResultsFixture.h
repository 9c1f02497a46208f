#pragma once

#include "core/bins/RoomLabel.h"
#include "tests/screens/BinnacleViewFixture.h"

namespace larkspan::test {

// The results of a sort, worked in by mouse and keyboard.
class ResultsTest : public BinnacleViewTest
{
protected:
    void sortAndShowAll(std::initializer_list<const char *> names)
    {
        makeClips(names);
        sortAndShow();
        ASSERT_TRUE(waitUntil([&] { return grid() || list(); }));
    }

    [[nodiscard]] QQuickItem *grid() const { return findNamed(scene->root(), u"clips"_s); }
    [[nodiscard]] QQuickItem *list() const { return findNamed(scene->root(), u"review"_s); }
    [[nodiscard]] ClipPtr clip(const QString &name) const
    {
        const auto found = std::ranges::find(engine.clips(), name, [](const ClipPtr &c) { return c->url.baseName(); });
        return found == engine.clips().end() ? nullptr : *found;
    }
    // In the window itself, menus and popups included.
    [[nodiscard]] QQuickItem *inWindow(const QString &text) const
    {
        return findShown(scene->window().contentItem(), text);
    }
    void hover(const QQuickItem *item)
    {
        QTest::mouseMove(&scene->window(), middleOf(item) - QPoint(2, 0));
        QTest::mouseMove(&scene->window(), middleOf(item));
    }
    void rightClick(const QString &text)
    {
        ASSERT_TRUE(shows(text));
        QTest::mouseClick(&scene->window(), Qt::RightButton, {}, middleOf(findShown(scene->root(), text)));
    }
    void typeTo(const QString &name)
    {
        for (const QChar letter : name) {
            QTest::keyClick(&scene->window(), letter.toLatin1());
        }
    }
};

} // namespace larkspan::test
