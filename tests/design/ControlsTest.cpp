#include "tests/design/Controls.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

TEST(LKButton, IsActivatedByMouseSpaceReturnAndEnter)
{
    Scene scene(document("LKButton { title: 'Go'; focus: true }"));
    QQuickItem *button = findShown(scene.root(), u"Go"_s);
    QSignalSpy activated(button, SIGNAL(activated()));
    scene.click(u"Go"_s);
    EXPECT_EQ(activated.count(), 1);
    button->forceActiveFocus();
    scene.key(Qt::Key_Space);
    EXPECT_EQ(activated.count(), 2);
    scene.key(Qt::Key_Return);
    EXPECT_EQ(activated.count(), 3);
    scene.key(Qt::Key_Enter);
    EXPECT_EQ(activated.count(), 4);
}

TEST(LKButton, AStandardOneIsClickableAcrossItsWholeAreaAtRest)
{
    Scene scene(document("LKButton { title: 'Go' }"));
    QQuickItem *button = findShown(scene.root(), u"Go"_s);
    QSignalSpy activated(button, SIGNAL(activated()));
    const QPoint size(static_cast<int>(button->width()), static_cast<int>(button->height()));
    for (const QPoint corner : {QPoint(1, 1), QPoint(size.x() - 2, 1), QPoint(1, size.y() - 2), size - QPoint(2, 2)}) {
        QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, corner);
    }
    EXPECT_EQ(activated.count(), 4);
}

TEST(LKButton, ADisabledOneDimsAndTakesNoAction)
{
    Scene scene(document("LKButton { title: 'Go'; enabled: false; focus: true }"));
    QQuickItem *button = findShown(scene.root(), u"Go"_s);
    QSignalSpy activated(button, SIGNAL(activated()));
    scene.click(u"Go"_s);
    scene.key(Qt::Key_Return);
    EXPECT_EQ(activated.count(), 0);
    EXPECT_EQ(button->opacity(), 0.45);
}

TEST(LKButton, HasTheHeightsOfItsSizes)
{
    Scene scene(document("Column {"
                         "LKButton { title: 'small'; size: LKButton.Sm }"
                         "LKButton { title: 'medium' }"
                         "LKButton { title: 'large'; size: LKButton.Lg } }"));
    EXPECT_EQ(findShown(scene.root(), u"small"_s)->height(), 22);
    EXPECT_EQ(findShown(scene.root(), u"medium"_s)->height(), 26);
    EXPECT_EQ(findShown(scene.root(), u"large"_s)->height(), 30);
}

TEST(LKButton, PressedWinsOverHover)
{
    Scene scene(document("LKButton { title: 'Go'; kind: LKButton.Accent }"));
    const QQuickItem *button = findShown(scene.root(), u"Go"_s);
    const LKPalette &palette = LK::instance().palette();
    EXPECT_EQ(fillOf(button), palette.accentSolid);
    QTest::mouseMove(&scene.window(), middleOf(button));
    EXPECT_TRUE(fillBecomes(button, palette.accentSolidHover));
    QTest::mousePress(&scene.window(), Qt::LeftButton, {}, middleOf(button));
    EXPECT_TRUE(fillBecomes(button, palette.accentSolidPressed));
    QTest::mouseRelease(&scene.window(), Qt::LeftButton, {}, middleOf(button));
    EXPECT_TRUE(fillBecomes(button, palette.accentSolidHover));
}

TEST(LKButton, ShowsWhereTheKeyboardIsButNotWhereTheMouseWas)
{
    Scene scene(document("Row { LKButton { title: 'one' } LKButton { title: 'two' } }"));
    const QQuickItem *one = findShown(scene.root(), u"one"_s);
    scene.click(u"one"_s);
    EXPECT_TRUE(one->hasActiveFocus());
    EXPECT_FALSE(one->property("visualFocus").toBool());
    scene.key(Qt::Key_Tab);
    scene.key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(one->property("visualFocus").toBool());
}

TEST(LKProgressBar, FillsByTheShareDoneAndNoFurther)
{
    Scene scene(
        document("LKProgressBar { objectName: 'bar'; width: 340; label: 'Sorting House'; done: 3; total: 12 }"));
    QQuickItem *bar = findNamed(scene.root(), u"bar"_s);
    EXPECT_EQ(bar->property("value").toDouble(), 0.25);
    EXPECT_NE(findShown(scene.root(), u"3 of 12"_s), nullptr);
    EXPECT_NE(findShown(scene.root(), u"Sorting House"_s), nullptr);
    bar->setProperty("done", 20);
    EXPECT_EQ(bar->property("value").toDouble(), 1.0);
    EXPECT_NE(findShown(scene.root(), u"20 of 12"_s), nullptr);
}

TEST(LKProgressBar, IsEmptyWithATotalOfZero)
{
    Scene scene(document("LKProgressBar { objectName: 'bar'; done: 5; total: 0 }"));
    EXPECT_EQ(findNamed(scene.root(), u"bar"_s)->property("value").toDouble(), 0.0);
}

TEST(LKSidebarRow, ShowsItsCountOnlyWhenItHasOneAndMay)
{
    Scene scene(document("Column {"
                         "LKSidebarRow { label: 'Kitchen'; count: 12 }"
                         "LKSidebarRow { label: 'Pool'; count: 34; showsCount: false }"
                         "LKSidebarRow { label: 'Garage' } }"));
    EXPECT_NE(findShown(scene.root(), u"12"_s), nullptr);
    EXPECT_EQ(findShown(scene.root(), u"34"_s), nullptr);
    EXPECT_EQ(findShown(scene.root(), u"-1"_s), nullptr);
}

TEST(LKEmptyState, OffersItsActionOnlyWithATitleForIt)
{
    Scene scene(document("Column {"
                         "LKEmptyState { objectName: 'plain'; title: 'Nothing' }"
                         "LKEmptyState { objectName: 'acting'; title: 'Something'; actionTitle: 'Do' } }"));
    QSignalSpy activated(findNamed(scene.root(), u"acting"_s), SIGNAL(activated()));
    scene.click(u"Do"_s);
    EXPECT_EQ(activated.count(), 1);
    EXPECT_FALSE(findNamed(scene.root(), u"plain"_s)->property("actionItem").value<QQuickItem *>()->isVisible());
}

TEST(Theme, AChangeReachesEveryControlAtOnce)
{
    Scene scene(document("Column {"
                         "LKButton { title: 'Go' }"
                         "LKDropdown { label: 'Tier' }"
                         "LKToggle { label: 'Sound' }"
                         "LKSegmented { objectName: 'segmented'; options: [{value: 1, label: 'One'}]; selection: 1 }"
                         "LKSidebarRow { label: 'Kitchen'; selected: true }"
                         "IconButton { name: 'plus'; help: 'Add' }"
                         "LKTextField { objectName: 'field' } }"));
    const auto expectPalette = [&](const LKPalette &palette) {
        const QQuickItem *button = findShown(scene.root(), u"Go"_s);
        EXPECT_EQ(colorOf(partOf(button, "contentItem")), palette.textPrimary);
        EXPECT_EQ(fillOf(findLabelled(scene.root(), u"Tier"_s)), palette.surfaceCard);
        EXPECT_EQ(colorOf(partOf(findLabelled(scene.root(), u"Sound"_s), "indicator")), palette.surfacePressed);
        const QQuickItem *segment = findShown(findNamed(scene.root(), u"segmented"_s), u"One"_s);
        EXPECT_EQ(fillOf(segment), palette.surfaceSelected);
        EXPECT_EQ(colorOf(partOf(segment, "contentItem")), palette.textPrimary);
        EXPECT_EQ(fillOf(findShown(scene.root(), u"Kitchen"_s)), palette.surfaceSelected);
        EXPECT_EQ(colorOf(partOf(findShown(scene.root(), u"Add"_s), "contentItem")), palette.textSecondary);
    };
    expectPalette(LKPalette::dark());
    LK::instance().setTheme(LK::Theme::Light);
    expectPalette(LKPalette::light());
    LK::instance().setTheme(LK::Theme::Dark);
    expectPalette(LKPalette::dark());
}

TEST(Theme, AChangeInTheMiddleOfAHoversMotionEndsIt)
{
    Scene scene(document("LKButton { x: 20; y: 20; title: 'Go' }"));
    const QQuickItem *button = findShown(scene.root(), u"Go"_s);
    const QColor rest = fillOf(button);
    QTest::mouseMove(&scene.window(), middleOf(button));
    EXPECT_TRUE(waitUntil([&] { return fillOf(button) != rest; }));
    LK::instance().setTheme(LK::Theme::Light);
    EXPECT_EQ(fillOf(button), LKPalette::light().surfaceHover);
    LK::instance().setTheme(LK::Theme::Dark);
    EXPECT_EQ(fillOf(button), LKPalette::dark().surfaceHover);
    QTest::mouseMove(&scene.window(), {400, 300});
    EXPECT_TRUE(fillBecomes(button, rest));
}
