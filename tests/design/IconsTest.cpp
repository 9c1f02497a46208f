#include "design/Symbols.h"
#include "tests/design/Controls.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

// Returns the number of a picture's pixels that have the colour.
qsizetype countOf(const QImage &picture, const QColor &color)
{
    qsizetype count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            count += picture.pixelColor(x, y) == color ? 1 : 0;
        }
    }
    return count;
}

} // namespace

TEST(Symbols, AreThoseThatTheScreensName)
{
    const QStringList named{u"arrow.left"_s,
                            u"checkmark"_s,
                            u"checkmark.circle.fill"_s,
                            u"chevron.down"_s,
                            u"chevron.left"_s,
                            u"chevron.right"_s,
                            u"chevron.up"_s,
                            u"chevron.up.chevron.down"_s,
                            u"folder"_s,
                            u"gearshape"_s,
                            u"gearshape.fill"_s,
                            u"info.circle"_s,
                            u"line.3.horizontal"_s,
                            u"minus"_s,
                            u"pause.fill"_s,
                            u"pencil"_s,
                            u"play.fill"_s,
                            u"plus"_s,
                            u"rectangle.stack"_s,
                            u"sdcard"_s,
                            u"speaker.fill"_s,
                            u"speaker.slash.fill"_s,
                            u"square"_s,
                            u"trash"_s,
                            u"xmark"_s};
    EXPECT_EQ(symbolNames(), named);
}

TEST(Symbols, StayInsideTheirSquareWithThePenIncluded)
{
    for (const QString &name : symbolNames()) {
        const Symbol *symbol = findSymbol(name);
        const QRectF drawn = symbol->solid.boundingRect().united(symbol->lines.boundingRect());
        const double margin = Symbol::penWidth / 2;
        EXPECT_FALSE(drawn.isEmpty() && drawn.width() == 0) << name.toStdString();
        EXPECT_TRUE(QRectF(margin, margin, Symbol::grid - 2 * margin, Symbol::grid - 2 * margin).contains(drawn) ||
                    drawn.height() == 0)
            << name.toStdString();
    }
}

TEST(LKIcon, IsDrawnInItsColourAndThemeChangesReachIt)
{
    Scene scene(document("LKIcon { objectName: 'icon'; name: 'plus'; size: 64; color: '#ff0000' }"));
    EXPECT_GT(countOf(scene.window().grabWindow(), Qt::red), 200);
    findNamed(scene.root(), u"icon"_s)->setProperty("color", QColor(Qt::blue));
    const QImage picture = scene.window().grabWindow();
    EXPECT_EQ(countOf(picture, Qt::red), 0);
    EXPECT_GT(countOf(picture, Qt::blue), 200);
}

TEST(LKIcon, TakesTheSquareOfItsSize)
{
    Scene scene(document("LKIcon { objectName: 'icon'; name: 'plus'; size: 18 }"));
    const QQuickItem *icon = findNamed(scene.root(), u"icon"_s);
    EXPECT_EQ(icon->size(), QSizeF(18, 18));
}

TEST(LKIcon, ATranslucentOneShowsNoSeams)
{
    Scene scene(document("LKIcon { name: 'play.fill'; size: 160; color: Qt.rgba(0, 0, 0, 0.5) }"));
    const QImage picture = scene.window().grabWindow().copy(0, 0, 160, 160);
    const QColor darkest = picture.pixelColor(75, 80);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            ASSERT_GE(picture.pixelColor(x, y).lightness(), darkest.lightness()) << x << ", " << y;
        }
    }
}

TEST(LKIcon, OfNoNameDrawsNothing)
{
    Scene scene(document("LKIcon { size: 64; color: '#ff0000' }"));
    EXPECT_EQ(countOf(scene.window().grabWindow(), Qt::white), 600 * 400);
}

TEST(IconButton, IsActivatedByMouseSpaceReturnAndEnter)
{
    Scene scene(document("IconButton { name: 'pencil'; help: 'Rename'; focus: true }"));
    QQuickItem *button = findShown(scene.root(), u"Rename"_s);
    QSignalSpy activated(button, SIGNAL(activated()));
    scene.click(u"Rename"_s);
    button->forceActiveFocus();
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        scene.key(key);
    }
    EXPECT_EQ(activated.count(), 4);
}

TEST(IconButton, TakesItsHoverTintUnderThePointer)
{
    Scene scene(document("IconButton { name: 'trash'; help: 'Remove'; tint: '#00ff00'; hoverTint: '#ff0000'; x: 50 }"));
    const QQuickItem *button = findShown(scene.root(), u"Remove"_s);
    const auto tint = [&] { return button->property("contentItem").value<QQuickItem *>()->property("color"); };
    EXPECT_EQ(tint().value<QColor>(), QColor(Qt::green));
    QTest::mouseMove(&scene.window(), middleOf(button));
    EXPECT_TRUE(waitUntil([&] { return tint().value<QColor>() == QColor(Qt::red); }));
    QTest::mouseMove(&scene.window(), QPoint(400, 300));
    EXPECT_TRUE(waitUntil([&] { return tint().value<QColor>() == QColor(Qt::green); }));
}

TEST(IconButton, SaysItsHelpWhileThePointerRestsOnItAndNoLonger)
{
    Scene scene(document("IconButton { name: 'gearshape.fill'; help: 'Preferences'; x: 300; y: 200 }"));
    const QQuickItem *button = findShown(scene.root(), u"Preferences"_s);
    const auto told = [&] {
        const QQuickItem *overlay = scene.window().contentItem()->childItems().last();
        return overlay != scene.root() && findShown(const_cast<QQuickItem *>(overlay), u"Preferences"_s) != nullptr;
    };
    EXPECT_FALSE(told());
    QTest::mouseMove(&scene.window(), middleOf(button));
    EXPECT_TRUE(waitUntil(told));
    QTest::mouseMove(&scene.window(), QPoint(10, 10));
    EXPECT_TRUE(waitUntil([&] { return !told(); }));
}

TEST(IconButton, SaysNothingWhileWhatItOpensIsThere)
{
    Scene scene(document("IconButton { name: 'pencil'; help: 'Rename'; isOpen: true }"));
    QQuickItem *button = findShown(scene.root(), u"Rename"_s);
    ASSERT_NE(button, nullptr);
    const auto wantsHelp = [&] {
        return std::ranges::any_of(button->childItems(),
                                   [](const QQuickItem *child) { return child->property("wanted").toBool(); });
    };
    button->forceActiveFocus(Qt::TabFocusReason);
    EXPECT_FALSE(wantsHelp());
    EXPECT_TRUE(fillBecomes(button, LK::instance().palette().surfaceHover));
    button->setProperty("isOpen", false);
    EXPECT_TRUE(wantsHelp());
}

TEST(LKToolTip, WrapsALongTextAndStaysInTheWindow)
{
    Scene scene(document("IconButton { objectName: 'button'; name: 'info.circle'; x: 570; y: 370 }"));
    QQuickItem *button = findNamed(scene.root(), u"button"_s);
    const QString text = u"a long word "_s.repeated(1000);
    button->setProperty("help", text);
    QTest::mouseMove(&scene.window(), middleOf(button));
    QQuickItem *told = nullptr;
    const auto overlay = [&] { return scene.window().contentItem()->childItems().last(); };
    ASSERT_TRUE(waitUntil([&] { return overlay() != scene.root() && (told = findShown(overlay(), text)); }));
    EXPECT_LE(told->width(), 320);
    EXPECT_GT(told->property("lineCount").toInt(), 3);
    const QRectF place = told->mapRectToScene(told->boundingRect());
    EXPECT_TRUE(QRectF(0, 0, 600, 400).contains(place)) << place.x() << ' ' << place.y() << ' ' << place.height();
}

TEST(IconButton, ADisabledOneDimsAndTakesNoAction)
{
    Scene scene(document("IconButton { name: 'trash'; help: 'Remove'; enabled: false }"));
    QQuickItem *button = findShown(scene.root(), u"Remove"_s);
    QSignalSpy activated(button, SIGNAL(activated()));
    scene.click(u"Remove"_s);
    EXPECT_EQ(activated.count(), 0);
    EXPECT_EQ(button->opacity(), 0.45);
}
