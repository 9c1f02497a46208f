#include "tests/design/Controls.h"
#include "tests/support/ScreenReader.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

const std::string threeOptions = "options: [{value: 'a', label: 'One'}, {value: 'b', label: 'Two'}, "
                                 "{value: 'c', label: 'Three'}]; objectName: 'choice'; ";

// The knob with its shadow.
QQuickItem *knobOf(const QQuickItem *below)
{
    return findNamed(const_cast<QQuickItem *>(below), u"knob"_s)->parentItem();
}

QQuickItem *segment(Scene &scene, const QString &label)
{
    return findShown(scene.root(), label);
}

QString selectionOf(Scene &scene)
{
    return findNamed(scene.root(), u"choice"_s)->property("selection").toString();
}

} // namespace

TEST(LKToggle, IsAPillWithAKnobAtItsEnd)
{
    Scene scene(document("Row { LKToggle { objectName: 'off' } LKToggle { objectName: 'on'; isOn: true } }"));
    const QQuickItem *off = findNamed(scene.root(), u"off"_s);
    const QQuickItem *on = findNamed(scene.root(), u"on"_s);
    EXPECT_EQ(off->size(), QSizeF(34, 20));
    const QQuickItem *track = partOf(off, "indicator");
    EXPECT_EQ(track->property("radius").toDouble(), 10);
    EXPECT_EQ(colorOf(track), LK::instance().palette().surfacePressed);
    EXPECT_EQ(colorOf(partOf(on, "indicator")), LK::instance().palette().accent);
    const QQuickItem *knobOff = knobOf(off);
    const QQuickItem *knobOn = knobOf(on);
    EXPECT_EQ(QRectF(knobOff->position(), knobOff->size()), QRectF(2, 2, 16, 16));
    EXPECT_EQ(QRectF(knobOn->position(), knobOn->size()), QRectF(16, 2, 16, 16));
    EXPECT_EQ(colorOf(findNamed(knobOn->parentItem(), u"knob"_s)), QColor(Qt::white));
}

TEST(LKToggle, FlipsByClickSpaceAndReturnAndKeepsItsBinding)
{
    Scene scene(document("property bool stored: false\n"
                         "LKToggle { objectName: 'toggle'; isOn: page.stored; onToggled: page.stored = isOn }"));
    QQuickItem *toggle = findNamed(scene.root(), u"toggle"_s);
    const auto stored = [&] { return scene.root()->property("stored").toBool(); };
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, middleOf(toggle));
    EXPECT_TRUE(stored());
    toggle->forceActiveFocus();
    scene.key(Qt::Key_Space);
    EXPECT_FALSE(stored());
    scene.key(Qt::Key_Return);
    EXPECT_TRUE(stored());
    scene.root()->setProperty("stored", false);
    EXPECT_FALSE(toggle->property("isOn").toBool());
}

TEST(LKToggle, MovesItsKnobAndTintsItsTrack)
{
    Scene scene(document("LKToggle { objectName: 'toggle' }"));
    const QQuickItem *toggle = findNamed(scene.root(), u"toggle"_s);
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, middleOf(toggle));
    EXPECT_TRUE(becomes(partOf(toggle, "indicator"), LK::instance().palette().accent));
    EXPECT_TRUE(waitUntil([&] { return knobOf(scene.root())->x() == 16; }));
}

TEST(LKToggle, HasItsKnobAtTheLeftWhenOnInARightToLeftLayout)
{
    Scene scene(document("LKToggle { isOn: true; LayoutMirroring.enabled: true }"));
    EXPECT_EQ(knobOf(scene.root())->x(), 2);
}

TEST(LKToggle, IsACheckableButtonToAssistiveTechnology)
{
    Scene scene(document("LKToggle { objectName: 'toggle'; label: 'Sounds'; isOn: true }"));
    QQuickItem *toggle = findNamed(scene.root(), u"toggle"_s);
    EXPECT_EQ(accessible(toggle)->role(), QAccessible::Button);
    EXPECT_EQ(accessibleName(toggle), u"Sounds"_s);
    EXPECT_TRUE(accessible(toggle)->state().checkable);
    EXPECT_TRUE(accessible(toggle)->state().checked);
    accessible(toggle)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_FALSE(toggle->property("isOn").toBool());
}

TEST(LKToggle, TellsItsOwnStateToAssistiveTechnologyThatComesLater)
{
    Scene scene(document("LKToggle { objectName: 'toggle'; label: 'Sounds'; isOn: true }"));
    QQuickItem *toggle = findNamed(scene.root(), u"toggle"_s);
    const ScreenReader reader;
    EXPECT_TRUE(accessible(toggle)->state().checkable);
    EXPECT_TRUE(accessible(toggle)->state().checked);
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, middleOf(toggle));
    EXPECT_FALSE(accessible(toggle)->state().checked);
}

TEST(LKToggle, KeepsItsStateWhenAPressIsMovedOff)
{
    Scene scene(document("LKToggle { objectName: 'toggle' }"));
    const QQuickItem *toggle = findNamed(scene.root(), u"toggle"_s);
    QTest::mousePress(&scene.window(), Qt::LeftButton, {}, middleOf(toggle));
    for (const int x : {25, 32, 60, 200}) {
        QTest::mouseMove(&scene.window(), {x, 10});
    }
    QTest::mouseRelease(&scene.window(), Qt::LeftButton, {}, {200, 10});
    EXPECT_FALSE(toggle->property("isOn").toBool());
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, middleOf(toggle));
    EXPECT_TRUE(toggle->property("isOn").toBool());
}

TEST(LKToggle, ADisabledOneDimsAndDoesNotFlip)
{
    Scene scene(document("LKToggle { objectName: 'toggle'; enabled: false }"));
    const QQuickItem *toggle = findNamed(scene.root(), u"toggle"_s);
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, middleOf(toggle));
    EXPECT_FALSE(toggle->property("isOn").toBool());
    EXPECT_EQ(toggle->opacity(), 0.45);
}

TEST(LKSegmented, HasTheMetricsOfItsSizes)
{
    Scene scene(document("Column {"
                         "LKSegmented { size: LKButton.Sm; options: [{value: 1, label: 'small'}]; selection: 1 }"
                         "LKSegmented { options: [{value: 1, label: 'medium'}]; selection: 1 }"
                         "LKSegmented { size: LKButton.Lg; options: [{value: 1, label: 'large'}]; selection: 1 } }"));
    const double points[]{10.5, 11.5, 12};
    int size = 0;
    for (const QString &label : {u"small"_s, u"medium"_s, u"large"_s}) {
        const QQuickItem *part = segment(scene, label);
        const QQuickItem *text = partOf(part, "contentItem");
        const QQuickItem *whole = part->parentItem()->parentItem()->parentItem();
        EXPECT_EQ(part->height(), 18 + 4 * size) << label.toStdString();
        EXPECT_EQ(whole->height(), part->height() + 4);
        EXPECT_EQ(whole->width(), part->width() + 4);
        EXPECT_TRUE(hasFont(text, points[size], QFont::DemiBold));
        EXPECT_NEAR(part->width(), text->implicitWidth() + 20, 1);
        EXPECT_EQ(partOf(part, "background")->property("radius").toDouble(), 3);
        EXPECT_EQ(partOf(whole, "background")->property("radius").toDouble(), 5);
        ++size;
    }
}

TEST(LKSegmented, PaintsTheChosenSegmentAndTheOthersApart)
{
    for (const LK::Theme theme : {LK::Theme::Light, LK::Theme::Dark}) {
        const Themed themed(theme);
        const LKPalette &palette = LK::instance().palette();
        Scene scene(document("LKSegmented { " + threeOptions + "selection: 'a' }"));
        EXPECT_EQ(fillOf(findNamed(scene.root(), u"choice"_s)), palette.surfaceCard);
        EXPECT_EQ(fillOf(segment(scene, u"One"_s)), palette.surfaceSelected);
        EXPECT_EQ(fillOf(segment(scene, u"Two"_s)), QColor(Qt::transparent));
        EXPECT_EQ(colorOf(partOf(segment(scene, u"One"_s), "contentItem")), palette.textPrimary);
        EXPECT_EQ(colorOf(partOf(segment(scene, u"Two"_s), "contentItem")), palette.textSecondary);
        scene.click(u"Two"_s);
        EXPECT_TRUE(fillBecomes(segment(scene, u"Two"_s), palette.surfaceSelected));
        EXPECT_TRUE(fillBecomes(segment(scene, u"One"_s), QColor(Qt::transparent)));
    }
}

TEST(LKSegmented, DimsADisabledSegmentAndADisabledWholeEachOnce)
{
    Scene scene(document("LKSegmented { " + threeOptions + "selection: 'a'; disabledValues: ['b'] }"));
    QQuickItem *whole = findNamed(scene.root(), u"choice"_s);
    EXPECT_EQ(segment(scene, u"One"_s)->opacity(), 1);
    EXPECT_EQ(segment(scene, u"Two"_s)->opacity(), 0.4);
    whole->setEnabled(false);
    EXPECT_EQ(whole->opacity(), 0.45);
    EXPECT_EQ(segment(scene, u"One"_s)->opacity(), 1);
}

TEST(LKSegmented, WritesTheSelectionAndKeepsItsBinding)
{
    Scene scene(document("property string stored: 'a'\nLKSegmented { " + threeOptions +
                         "selection: page.stored; onActivated: value => page.stored = value }"));
    scene.click(u"Two"_s);
    EXPECT_EQ(scene.root()->property("stored").toString(), u"b"_s);
    scene.root()->setProperty("stored", u"c"_s);
    EXPECT_EQ(selectionOf(scene), u"c"_s);
}

TEST(LKSegmented, IsChosenFromByArrowsHomeAndEndWithOneStopForTab)
{
    Scene scene(document("Row { LKButton { title: 'before'; focus: true }"
                         "LKSegmented { " +
                         threeOptions + "selection: 'b' } LKButton { title: 'after' } }"));
    scene.key(Qt::Key_Tab);
    EXPECT_TRUE(segment(scene, u"Two"_s)->hasActiveFocus());
    EXPECT_TRUE(segment(scene, u"Two"_s)->property("visualFocus").toBool());
    scene.key(Qt::Key_Right);
    EXPECT_EQ(selectionOf(scene), u"c"_s);
    scene.key(Qt::Key_Right);
    EXPECT_EQ(selectionOf(scene), u"c"_s);
    scene.key(Qt::Key_Home);
    EXPECT_EQ(selectionOf(scene), u"a"_s);
    scene.key(Qt::Key_End);
    EXPECT_EQ(selectionOf(scene), u"c"_s);
    scene.key(Qt::Key_Left);
    EXPECT_EQ(selectionOf(scene), u"b"_s);
    EXPECT_TRUE(segment(scene, u"Two"_s)->hasActiveFocus());
    scene.key(Qt::Key_Tab);
    EXPECT_TRUE(findShown(scene.root(), u"after"_s)->hasActiveFocus());
    scene.key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(segment(scene, u"Two"_s)->hasActiveFocus());
}

TEST(LKSegmented, ArrowsAreMirroredInARightToLeftLayout)
{
    Scene scene(document("LKSegmented { LayoutMirroring.enabled: true; LayoutMirroring.childrenInherit: true; " +
                         threeOptions + "selection: 'a' }"));
    EXPECT_GT(segment(scene, u"One"_s)->x(), segment(scene, u"Two"_s)->x());
    segment(scene, u"One"_s)->forceActiveFocus();
    scene.key(Qt::Key_Left);
    EXPECT_EQ(selectionOf(scene), u"b"_s);
}

TEST(LKSegmented, ADisabledValueIsDimAndIsPassedOver)
{
    Scene scene(document("LKSegmented { " + threeOptions + "selection: 'a'; disabledValues: ['b'] }"));
    EXPECT_EQ(segment(scene, u"Two"_s)->opacity(), 0.4);
    EXPECT_EQ(segment(scene, u"Three"_s)->opacity(), 1);
    scene.click(u"Two"_s);
    EXPECT_EQ(selectionOf(scene), u"a"_s);
    segment(scene, u"One"_s)->forceActiveFocus();
    scene.key(Qt::Key_Right);
    EXPECT_EQ(selectionOf(scene), u"c"_s);
}

TEST(LKSegmented, SwapsItsBorderForTheGradientAtOnceAndLosesItWhenTheSelectionMovesOff)
{
    Scene scene(document("LKSegmented { " + threeOptions + "selection: 'a'; aiValues: ['b'] }"));
    const QQuickItem *frame = partOf(findNamed(scene.root(), u"choice"_s), "background");
    const QQuickItem *gradient = frame->childItems().constFirst();
    const auto lineWidth = [&] { return frame->property("border").value<QObject *>()->property("width").toDouble(); };
    EXPECT_FALSE(gradient->isVisible());
    EXPECT_EQ(lineWidth(), 1);
    scene.click(u"Two"_s);
    EXPECT_TRUE(gradient->isVisible());
    EXPECT_EQ(lineWidth(), 0);
    EXPECT_EQ(gradient->property("lineWidth").toDouble(), 1.5);
    scene.click(u"Three"_s);
    EXPECT_FALSE(gradient->isVisible());
    EXPECT_EQ(lineWidth(), 1);
}

TEST(LKSegmented, IsButtonsOfWhichOneIsSelectedToAssistiveTechnology)
{
    Scene scene(document("LKSegmented { " + threeOptions + "selection: 'a'; label: 'Model' }"));
    EXPECT_EQ(accessibleName(findNamed(scene.root(), u"choice"_s)), u"Model"_s);
    EXPECT_EQ(accessible(findNamed(scene.root(), u"choice"_s))->role(), QAccessible::Pane);
    EXPECT_EQ(accessible(segment(scene, u"One"_s))->role(), QAccessible::Button);
    EXPECT_TRUE(accessible(segment(scene, u"One"_s))->state().selected);
    EXPECT_FALSE(accessible(segment(scene, u"Two"_s))->state().selected);
    accessible(segment(scene, u"Two"_s))->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(selectionOf(scene), u"b"_s);
}

TEST(LKSegmented, StandsNoOptionsAndASelectionOutsideThem)
{
    Scene scene(document("Column { LKSegmented { focus: true } LKSegmented { " + threeOptions + "selection: 'x' } }"));
    for (const QString &label : {u"One"_s, u"Two"_s, u"Three"_s}) {
        EXPECT_EQ(fillOf(segment(scene, label)), QColor(Qt::transparent));
    }
    segment(scene, u"One"_s)->forceActiveFocus();
    scene.key(Qt::Key_Space);
    EXPECT_EQ(selectionOf(scene), u"a"_s);
}
