#include "tests/design/Controls.h"
#include "tests/support/ScreenReader.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

const std::string popover = "LKButton { objectName: 'anchor'; title: 'Open'; onActivated: panel.visible ? "
                            "panel.close() : panel.open(); ";
const std::string panel = "LKPopover { id: panel; objectName: 'panel'; Item { implicitWidth: 200; implicitHeight: 120; "
                          "LKButton { title: 'Inside'; focus: true } } } }";

// A menu is no item: it is reached as the document's property.
std::string menuDocument(const std::string &entries)
{
    return document("property string chosen\nproperty alias menu: menu\n"
                    "function openAt(x, y) { menu.popup(x, y) }\nLKMenu { id: menu\n" +
                    entries + " }");
}

class Menu
{
public:
    explicit Menu(Scene &scene) : m_scene(scene), m_menu(scene.root()->property("menu").value<QObject *>()) {}

    void open(QPoint at = {20, 20}) const
    {
        QMetaObject::invokeMethod(m_scene.root(), "openAt", Q_ARG(QVariant, at.x()), Q_ARG(QVariant, at.y()));
    }
    bool isOpen() const { return m_menu->property("opened").toBool(); }
    QQuickItem *entry(const QString &text) const { return findShown(m_scene.window().contentItem(), text); }
    QString highlighted() const
    {
        QQuickItem *item = nullptr;
        QMetaObject::invokeMethod(m_menu, "itemAt", Q_RETURN_ARG(QQuickItem *, item),
                                  Q_ARG(int, m_menu->property("currentIndex").toInt()));
        return item ? item->property("text").toString() : QString();
    }
    QObject *object() const { return m_menu; }

private:
    Scene &m_scene;
    QObject *m_menu;
};

// The tool tip that is shown, in the window.
const QQuickItem *toolTipIn(const QQuickWindow &window)
{
    for (const QQuickItem *layer : window.contentItem()->childItems()) {
        for (const QQuickItem *item : layer->childItems()) {
            if (item->inherits("QQuickPopupItem") && item->isVisible()) {
                return item;
            }
        }
    }
    return nullptr;
}

QRectF placeOf(const QObject *popup)
{
    const auto *item = popup->property("contentItem").value<QQuickItem *>()->parentItem();
    return item->mapRectToScene(item->boundingRect());
}

} // namespace

TEST(LKPopover, HasTheKeyboardAtOnceAndAClickOnItNeedsNoOther)
{
    Scene scene(document(popover + panel));
    scene.click(u"Open"_s);
    QQuickItem *inside = findShown(scene.window().contentItem(), u"Inside"_s);
    ASSERT_NE(inside, nullptr);
    EXPECT_TRUE(inside->hasActiveFocus());
    QSignalSpy activated(inside, SIGNAL(activated()));
    scene.click(u"Inside"_s);
    EXPECT_EQ(activated.count(), 1);
}

TEST(LKPopover, GoesWithEscapeAndGivesTheKeyboardBack)
{
    Scene scene(document(popover + panel));
    const QObject *popup = scene.root()->findChild<QObject *>(u"panel"_s);
    scene.click(u"Open"_s);
    EXPECT_TRUE(waitUntil([&] { return popup->property("opened").toBool(); }));
    scene.key(Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([&] { return !popup->property("visible").toBool(); }));
    EXPECT_TRUE(findNamed(scene.root(), u"anchor"_s)->hasActiveFocus());
}

TEST(LKPopover, GoesWithAPressElsewhereAndWithAClickOnItsAnchor)
{
    Scene scene(document(popover + panel));
    const QObject *popup = scene.root()->findChild<QObject *>(u"panel"_s);
    const auto opened = [&] { return popup->property("opened").toBool(); };
    const auto gone = [&] { return !popup->property("visible").toBool(); };
    scene.click(u"Open"_s);
    EXPECT_TRUE(waitUntil(opened));
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, QPoint(580, 380));
    EXPECT_TRUE(waitUntil(gone));
    scene.click(u"Open"_s);
    EXPECT_TRUE(waitUntil(opened));
    scene.click(u"Open"_s);
    EXPECT_TRUE(waitUntil(gone));
}

TEST(LKPopover, OpensBelowItsAnchorAboveItAtTheBottomAndStaysInTheWindow)
{
    for (const auto &[x, y] : {std::pair(250, 20), std::pair(0, 370), std::pair(560, 370)}) {
        Scene scene(document(popover + "x: " + std::to_string(x) + "; y: " + std::to_string(y) + "; " + panel));
        const QObject *popup = scene.root()->findChild<QObject *>(u"panel"_s);
        scene.click(u"Open"_s);
        EXPECT_TRUE(waitUntil([&] { return popup->property("opened").toBool(); }));
        const QRectF place = placeOf(popup);
        EXPECT_TRUE(QRectF(8, 8, 584, 384).contains(place)) << x << ", " << y;
        const QQuickItem *anchor = findNamed(scene.root(), u"anchor"_s);
        if (y == 20) {
            EXPECT_EQ(place.top(), anchor->y() + anchor->height() + 6);
        } else {
            EXPECT_EQ(place.bottom(), anchor->y() - 6);
        }
    }
}

TEST(LKToolTip, LiesBelowWhatItIsForOrAboveWhereItIsAskedTo)
{
    for (const bool above : {false, true}) {
        Scene scene(document("Item { x: 200; y: 100; width: 40; height: 20\nLKToolTip { objectName: 'help'; "
                             "text: 'Pause'; wanted: true; above: " +
                             std::string(above ? "true" : "false") + " } }"));
        const QQuickItem *tip = nullptr;
        ASSERT_TRUE(waitUntil([&] { return (tip = toolTipIn(scene.window())) != nullptr; }));
        const QRectF place = tip->mapRectToScene(tip->boundingRect());
        EXPECT_EQ(place.center().x(), 220);
        EXPECT_EQ(above ? place.bottom() : place.top(), above ? 94 : 126);
    }
}

TEST(Popups, OpenAboveTheHigherOneThatTheyComeFrom)
{
    Scene scene(R"(
        import QtQuick
        import QtQuick.Templates as T
        import Larkspan.Design
        Rectangle {
            id: page
            property var taken: []
            property Component content: Component {
                Column {
                    spacing: 100
                    LKDropdown {
                        options: [{value: 0, label: "Kitchen"}, {value: 1, label: "Pool"}]
                        selection: 0
                        onActivated: row => page.taken = page.taken.concat("dropdown")
                    }
                    LKButton {
                        title: "Popover"
                        onActivated: popover.open()
                        LKPopover {
                            id: popover
                            LKButton { title: "Inside"; onActivated: page.taken = page.taken.concat("popover") }
                        }
                    }
                    LKButton {
                        title: "Menu"
                        onActivated: menu.popup()
                        LKMenu {
                            id: menu
                            LKMenuItem { text: "Entry"; onTriggered: page.taken = page.taken.concat("menu") }
                        }
                    }
                }
            }
            T.Popup {
                width: 600; height: 400; z: 3; modal: true; visible: true; closePolicy: T.Popup.NoAutoClose
                Loader { sourceComponent: page.content }
            }
        })");
    const auto clickOnceShown = [&](const QString &text) {
        QQuickItem *all = scene.window().contentItem();
        EXPECT_TRUE(waitUntil([&] {
            const QQuickItem *item = findShown(all, text);
            return item != nullptr && item->width() > 0 && middleOf(item).y() > 0;
        }));
        scene.window().grabWindow(); // so that all has found its place
        scene.click(text);
    };
    for (const QString &step : {u"Kitchen"_s, u"Pool"_s, u"Popover"_s, u"Inside"_s}) {
        clickOnceShown(step);
    }
    scene.key(Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([&] { return findShown(scene.window().contentItem(), u"Inside"_s) == nullptr; }));
    clickOnceShown(u"Menu"_s);
    clickOnceShown(u"Entry"_s);
    EXPECT_EQ(scene.root()->property("taken").toStringList(), (QStringList{u"dropdown"_s, u"popover"_s, u"menu"_s}));
}

TEST(LKMenu, TakesAChoiceByClickAndCloses)
{
    Scene scene(menuDocument("LKMenuItem { text: 'Reveal'; onTriggered: page.chosen = text }"));
    Menu menu(scene);
    menu.open();
    ASSERT_TRUE(waitUntil([&] { return menu.isOpen(); }));
    scene.click(u"Reveal"_s);
    EXPECT_EQ(scene.root()->property("chosen").toString(), u"Reveal"_s);
    EXPECT_TRUE(waitUntil([&] { return !menu.object()->property("visible").toBool(); }));
}

TEST(LKMenu, HasRoomForATextThatChangedWhileItWasClosed)
{
    Scene scene(menuDocument("LKMenuItem { text: page.chosen === '' ? 'Undo' : page.chosen; keys: 'Ctrl+Z' }"));
    Menu menu(scene);
    menu.open();
    ASSERT_TRUE(waitUntil([&] { return menu.isOpen(); }));
    QMetaObject::invokeMethod(menu.object(), "close");
    ASSERT_TRUE(waitUntil([&] { return !menu.object()->property("visible").toBool(); }));
    const QString longer = u"Undo Move to Amenities / Other"_s;
    scene.root()->setProperty("chosen", longer);
    menu.open();
    ASSERT_TRUE(waitUntil([&] { return menu.isOpen() && menu.entry(longer) != nullptr; }));
    const QQuickItem *entry = menu.entry(longer);
    EXPECT_GE(entry->width(), entry->implicitWidth());
    EXPECT_GT(entry->width(), 200.0);
}

TEST(LKMenu, IsWalkedByArrowsPastWhatCannotBeChosen)
{
    Scene scene(
        menuDocument("LKMenuItem { text: 'Alpha' } LKMenuSeparator {} LKMenuItem { text: 'Beta'; enabled: false }"
                     "LKMenuItem { text: 'Gamma'; onTriggered: page.chosen = text } LKMenuItem { text: 'Delta' }"));
    Menu menu(scene);
    menu.open();
    ASSERT_TRUE(waitUntil([&] { return menu.isOpen(); }));
    scene.key(Qt::Key_Down);
    EXPECT_EQ(menu.highlighted(), u"Alpha"_s);
    scene.key(Qt::Key_Down);
    EXPECT_EQ(menu.highlighted(), u"Gamma"_s);
    scene.key(Qt::Key_End);
    EXPECT_EQ(menu.highlighted(), u"Delta"_s);
    scene.key(Qt::Key_Down);
    EXPECT_EQ(menu.highlighted(), u"Alpha"_s);
    scene.key(Qt::Key_Up);
    EXPECT_EQ(menu.highlighted(), u"Delta"_s);
    scene.key(Qt::Key_Up);
    scene.key(Qt::Key_Return);
    EXPECT_EQ(scene.root()->property("chosen").toString(), u"Gamma"_s);
}

TEST(LKMenu, GoesToWhatIsTyped)
{
    Scene scene(menuDocument("LKMenuItem { text: 'Kitchen' } LKMenuItem { text: 'Bathroom'; enabled: false }"
                             "LKMenuItem { text: 'Bedroom' } LKMenuItem { text: 'Balcony'; marked: true }"));
    Menu menu(scene);
    menu.open();
    ASSERT_TRUE(waitUntil([&] { return menu.isOpen(); }));
    scene.key(Qt::Key_B);
    EXPECT_EQ(menu.highlighted(), u"Bedroom"_s);
    scene.key(Qt::Key_A);
    EXPECT_EQ(menu.highlighted(), u"Balcony"_s);
    EXPECT_NE(menu.entry(u"✓ Balcony"_s), nullptr);
}

TEST(LKMenu, EscapeTwiceInARowClosesASubmenuAndItsMenu)
{
    Scene scene(menuDocument("LKMenu { title: 'Move to'\nLKMenuItem { text: 'Pool' } }"));
    Menu menu(scene);
    menu.open();
    ASSERT_TRUE(waitUntil([&] { return menu.isOpen(); }));
    scene.key(Qt::Key_M);
    scene.key(Qt::Key_Right);
    ASSERT_TRUE(waitUntil([&] { return menu.entry(u"Pool"_s) != nullptr; }));
    scene.key(Qt::Key_Escape);
    scene.key(Qt::Key_Escape); // while the submenu fades
    EXPECT_TRUE(waitUntil([&] { return menu.entry(u"Move to"_s) == nullptr; }));
}

TEST(LKMenu, OpensASubmenuByKeyAndChoosesFromIt)
{
    Scene scene(menuDocument("LKMenuItem { text: 'Open' } LKMenu { title: 'Move to'\n"
                             "LKMenuItem { text: 'Pool'; onTriggered: page.chosen = text } }"));
    Menu menu(scene);
    menu.open();
    ASSERT_TRUE(waitUntil([&] { return menu.isOpen(); }));
    scene.key(Qt::Key_M);
    EXPECT_EQ(menu.highlighted(), u"Move to"_s);
    EXPECT_EQ(menu.entry(u"Pool"_s), nullptr);
    scene.key(Qt::Key_Right);
    EXPECT_TRUE(waitUntil([&] { return menu.entry(u"Pool"_s) != nullptr; }));
    scene.key(Qt::Key_Return);
    EXPECT_EQ(scene.root()->property("chosen").toString(), u"Pool"_s);
    EXPECT_TRUE(waitUntil([&] { return !menu.isOpen(); }));
}

TEST(LKMenu, ScrollsWhereTheWindowIsTooLowAndNeverLeavesIt)
{
    Scene scene(
        menuDocument("Repeater { model: 60; LKMenuItem { required property int index; text: 'Entry ' + index } }"));
    Menu menu(scene);
    menu.open({590, 390});
    ASSERT_TRUE(waitUntil([&] { return menu.isOpen(); }));
    EXPECT_TRUE(QRectF(6, 6, 588, 388).contains(placeOf(menu.object())));
    scene.key(Qt::Key_End);
    EXPECT_EQ(menu.highlighted(), u"Entry 59"_s);
    EXPECT_TRUE(waitUntil([&] {
        const QQuickItem *last = menu.entry(u"Entry 59"_s);
        return last && QRectF(0, 0, 600, 400).contains(last->mapRectToScene(last->boundingRect()));
    }));
}

TEST(LKMenu, IsAMenuOfMenuItemsToAssistiveTechnology)
{
    Scene scene(menuDocument("LKMenuItem { text: 'Pool'; marked: true; onTriggered: page.chosen = text }"));
    Menu menu(scene);
    menu.open();
    ASSERT_TRUE(waitUntil([&] { return menu.isOpen(); }));
    QQuickItem *entry = menu.entry(u"Pool"_s);
    EXPECT_EQ(accessible(entry)->role(), QAccessible::MenuItem);
    EXPECT_EQ(accessibleName(entry), u"Pool"_s);
    EXPECT_TRUE(accessible(entry)->state().checked);
    accessible(entry)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(scene.root()->property("chosen").toString(), u"Pool"_s);
}

TEST(LKMenuItem, TellsThatItIsMarkedToAssistiveTechnologyThatComesLaterAlsoAfterAChoice)
{
    Scene scene(menuDocument("LKMenuItem { text: 'Pool'; marked: true } LKMenuItem { text: 'Spa' }"));
    const Menu menu(scene);
    menu.open();
    ASSERT_TRUE(waitUntil([&] { return menu.isOpen(); }));
    QQuickItem *pool = menu.entry(u"Pool"_s);
    const ScreenReader reader;
    EXPECT_TRUE(accessible(pool)->state().checkable);
    EXPECT_TRUE(accessible(pool)->state().checked);
    EXPECT_FALSE(accessible(menu.entry(u"Spa"_s))->state().checkable);
    scene.click(u"Pool"_s);
    EXPECT_TRUE(waitUntil([&] { return !menu.isOpen(); }));
    EXPECT_TRUE(accessible(pool)->state().checked);
    pool->setProperty("marked", false);
    EXPECT_FALSE(accessible(pool)->state().checked);
}

TEST(LKTextField, IsWrittenInAndTakenWithReturn)
{
    Scene scene(document("LKTextField { objectName: 'field'; placeholderText: 'Project name'; focus: true }"));
    QQuickItem *field = findNamed(scene.root(), u"field"_s);
    QSignalSpy accepted(field, SIGNAL(accepted()));
    EXPECT_EQ(field->height(), 26);
    EXPECT_NE(findShown(scene.root(), u"Project name"_s), nullptr);
    EXPECT_EQ(accessible(field)->role(), QAccessible::EditableText);
    EXPECT_EQ(accessibleName(field), u"Project name"_s);
    scene.key(Qt::Key_A);
    EXPECT_EQ(field->property("text").toString(), u"a"_s);
    EXPECT_EQ(findShown(scene.root(), u"Project name"_s), nullptr);
    scene.key(Qt::Key_Return);
    EXPECT_EQ(accepted.count(), 1);
}

TEST(LKTextField, ShowsARingForTheKeyboardAndAnAccentedBorderForEitherFocus)
{
    Scene scene(document("Row { LKButton { title: 'first'; focus: true } LKTextField { objectName: 'field' } }"));
    const QQuickItem *field = findNamed(scene.root(), u"field"_s);
    const QQuickItem *ring = partOf(field, "background")->childItems().constFirst();
    const auto border = [&] {
        return partOf(field, "background")->property("border").value<QObject *>()->property("color").value<QColor>();
    };
    const LKPalette &palette = LK::instance().palette();
    EXPECT_EQ(border(), LK::instance().over(palette.borderStrong, palette.surfaceCard));
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, middleOf(field));
    EXPECT_TRUE(waitUntil([&] { return border() == LK::instance().palette().accent; }));
    EXPECT_FALSE(ring->isVisible());
    findShown(scene.root(), u"first"_s)->forceActiveFocus();
    scene.key(Qt::Key_Tab);
    EXPECT_TRUE(ring->isVisible());
}
