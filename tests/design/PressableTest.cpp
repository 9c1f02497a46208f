#include "tests/design/Controls.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

// One pressable, and the number of times that it was activated.
class Pressable
{
public:
    explicit Pressable(const std::string &properties = "", const std::string &type = "LKPressable")
        : scene(document(type + " { objectName: 'pressable'; width: 80; height: 26; " + properties + " }"))
    {}

    void sendReturn(QEvent::Type type, bool isHeld)
    {
        QKeyEvent event(type, Qt::Key_Return, {}, u"\r"_s, isHeld);
        QCoreApplication::sendEvent(&scene.window(), &event);
    }

    Scene scene;
    QQuickItem &item = *findNamed(scene.root(), u"pressable"_s);
    QSignalSpy activated{&item, SIGNAL(activated())};
};

} // namespace

TEST(LKPressable, IsPressedByMouseSpaceReturnEnterAndAssistiveTechnology)
{
    Pressable pressed;
    QTest::mouseClick(&pressed.scene.window(), Qt::LeftButton, {}, middleOf(&pressed.item));
    EXPECT_EQ(pressed.activated.count(), 1);
    pressed.item.forceActiveFocus();
    int count = 1;
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        pressed.scene.key(key);
        EXPECT_EQ(pressed.activated.count(), ++count) << key;
    }
    accessible(&pressed.item)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(pressed.activated.count(), ++count);
}

TEST(LKPressable, ACheckableOneIsTurnedByWhateverPressesIt)
{
    Pressable pressed("checkable: true; property int turns: 0; onToggled: ++turns");
    const auto turns = [&] { return pressed.item.property("turns").toInt(); };
    QTest::mouseClick(&pressed.scene.window(), Qt::LeftButton, {}, middleOf(&pressed.item));
    EXPECT_EQ(turns(), 1);
    pressed.item.forceActiveFocus();
    int count = 1;
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        pressed.scene.key(key);
        EXPECT_EQ(turns(), ++count) << key;
        EXPECT_EQ(pressed.item.property("checked").toBool(), count % 2 == 1) << key;
    }
    accessible(&pressed.item)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(turns(), ++count);
    EXPECT_EQ(pressed.activated.count(), count);
}

TEST(LKPressable, OfExclusiveOnesOneStaysChosenWhateverPressesIt)
{
    Scene scene(document("Column { LKPressable { objectName: 'one'; width: 80; height: 26; checkable: true\n"
                         "autoExclusive: true; checked: true }\n"
                         "LKPressable { objectName: 'other'; width: 80; height: 26; checkable: true\n"
                         "autoExclusive: true } }"));
    QQuickItem *one = findNamed(scene.root(), u"one"_s);
    QQuickItem *other = findNamed(scene.root(), u"other"_s);
    const auto isChosen = [](const QQuickItem *item) { return item->property("checked").toBool(); };
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, middleOf(one));
    EXPECT_TRUE(isChosen(one));
    one->forceActiveFocus();
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        scene.key(key);
        EXPECT_TRUE(isChosen(one)) << key;
    }
    accessible(one)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(isChosen(one));
    accessible(other)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(isChosen(other));
    EXPECT_FALSE(isChosen(one));
}

TEST(LKPressable, IsPressedOnceByAKeyThatIsHeld)
{
    for (const char *type : {"LKPressable", "LKButton", "IconButton", "LKSidebarRow", "LKOverlayButton"}) {
        Pressable pressed("focus: true", type);
        pressed.sendReturn(QEvent::KeyPress, false);
        pressed.sendReturn(QEvent::KeyRelease, true);
        pressed.sendReturn(QEvent::KeyPress, true);
        pressed.sendReturn(QEvent::KeyRelease, false);
        EXPECT_EQ(pressed.activated.count(), 1) << type;
    }
}

TEST(LKPressable, ADisabledOneDimsAndIsNotPressedByAssistiveTechnology)
{
    Pressable pressed("enabled: false; words: 'Go'");
    EXPECT_EQ(pressed.item.opacity(), 0.45);
    accessible(&pressed.item)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(pressed.activated.count(), 0);
    pressed.item.setEnabled(true);
    EXPECT_EQ(pressed.item.opacity(), 1);
}

TEST(LKPressable, AnAmpersandInItsWordsIsReadAndMarksNoShortcut)
{
    Pressable pressed("words: '&Both & more'");
    EXPECT_EQ(accessibleName(&pressed.item), u"&Both & more"_s);
    QTest::keyClick(&pressed.scene.window(), Qt::Key_B, Qt::AltModifier);
    EXPECT_EQ(pressed.activated.count(), 0);
    QTest::mouseClick(&pressed.scene.window(), Qt::LeftButton, {}, middleOf(&pressed.item));
    EXPECT_EQ(pressed.activated.count(), 1);
}

TEST(LKPressable, HasItsRingForTheKeyboardAlone)
{
    Pressable pressed("ring.cornerRadius: 6; ring.reach: 1");
    const auto *ring = pressed.item.property("ring").value<QQuickItem *>();
    QTest::mouseClick(&pressed.scene.window(), Qt::LeftButton, {}, middleOf(&pressed.item));
    EXPECT_TRUE(pressed.item.hasActiveFocus());
    EXPECT_FALSE(ring->isVisible());
    pressed.scene.root()->forceActiveFocus();
    pressed.item.forceActiveFocus(Qt::TabFocusReason);
    EXPECT_TRUE(ring->isVisible());
    EXPECT_EQ(QRectF(ring->position(), ring->size()), QRectF(-1, -1, 82, 28));
    EXPECT_EQ(ring->property("radius").toDouble(), 9);
}

TEST(LKPressable, MovesItsFillFasterForAPressThanForHovering)
{
    const Pressable pressed;
    const auto motion = [&] { return pressed.item.property("fillMotion").toInt(); };
    QTest::mouseMove(&pressed.scene.window(), middleOf(&pressed.item));
    EXPECT_TRUE(waitUntil([&] { return pressed.item.property("hovered").toBool(); }));
    EXPECT_EQ(motion(), LK::instance().motion().hover);
    QTest::mousePress(&pressed.scene.window(), Qt::LeftButton, {}, middleOf(&pressed.item));
    EXPECT_EQ(motion(), LK::instance().motion().press);
    QTest::mouseRelease(&pressed.scene.window(), Qt::LeftButton, {}, middleOf(&pressed.item));
    EXPECT_EQ(motion(), LK::instance().motion().press);
}

TEST(LKOverlayButton, GetsDarkerUnderThePointerAndWhenPressed)
{
    const Pressable pressed("", "LKOverlayButton");
    QTest::mouseMove(&pressed.scene.window(), {300, 300});
    EXPECT_TRUE(fillBecomes(&pressed.item, QColor::fromRgbF(0, 0, 0, 0.45f)));
    QTest::mouseMove(&pressed.scene.window(), middleOf(&pressed.item));
    EXPECT_TRUE(fillBecomes(&pressed.item, QColor::fromRgbF(0, 0, 0, 0.6f)));
    QTest::mousePress(&pressed.scene.window(), Qt::LeftButton, {}, middleOf(&pressed.item));
    EXPECT_TRUE(fillBecomes(&pressed.item, QColor::fromRgbF(0, 0, 0, 0.75f)));
    QTest::mouseRelease(&pressed.scene.window(), Qt::LeftButton, {}, middleOf(&pressed.item));
    EXPECT_TRUE(fillBecomes(&pressed.item, QColor::fromRgbF(0, 0, 0, 0.6f)));
}
