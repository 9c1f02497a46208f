// The window itself: its frame, what it shows when, and what lies above.
#include <QtGui/QScreen>
#include <QtQml/QQmlExtensionPlugin>
#include <QtQml/QQmlIncubationController>

#include "design/IntroSequence.h"
#include "shell/launcher/LKTool.h"
#include "tests/shell/ShellWindow.h"

Q_IMPORT_QML_PLUGIN(Larkspan_ShellPlugin)

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

class WindowTest : public ShellWindowTest
{
protected:
    // So that it lasts until the test ends it.
    void holdIntro() const
    {
        auto *intro = window->findChild<IntroSequence *>();
        ASSERT_NE(intro, nullptr);
        QObject::disconnect(intro, &IntroSequence::finished, nullptr, nullptr);
    }
};

} // namespace

TEST_F(WindowTest, OpensInItsIdealSizeWithoutATitleBar)
{
    open();
    EXPECT_EQ(window->size(), QSize(1180, 790));
    EXPECT_EQ(window->frameMargins(), QMargins());
    EXPECT_EQ(window->title(), u"Larkspan"_s);
}

TEST_F(WindowTest, OpensNoLargerThanItsDisplayHasRoomFor)
{
    Desktop::setScale(1.5);
    openInIntro();
    const QSize room = window->screen()->availableSize();
    EXPECT_LT(room.width(), 1180);
    EXPECT_LT(room.height(), 790);
    EXPECT_EQ(window->size(), room);
    Desktop::setScale(1);
}

TEST_F(WindowTest, CannotBeMadeSmallerThanItsContentByItsCorner)
{
    open();
    const QPoint corner = window->mapToGlobal(QPoint(window->width() - 3, window->height() - 3));
    Desktop::drag(corner, corner - QPoint(100, 60));
    EXPECT_TRUE(waitUntil([this] { return window->width() < 1180 && window->height() < 790; }));
    const QPoint nextCorner = window->mapToGlobal(QPoint(window->width() - 3, window->height() - 3));
    Desktop::drag(nextCorner, nextCorner - QPoint(600, 500));
    EXPECT_TRUE(waitUntil([this] { return window->size() == QSize(980, 640); }))
        << window->width() << " x " << window->height();
}

TEST_F(WindowTest, IsMovedByItsHeaderAndFillsTheScreenOnADoubleClick)
{
    open();
    const QPoint before = window->position();
    const QPoint hold = window->mapToGlobal(QPoint(590, 20));
    Desktop::drag(hold, hold + QPoint(60, 40));
    // Less the way that it takes to tell a drag from a press.
    EXPECT_TRUE(waitUntil([&] { return window->x() > before.x() + 20 && window->y() > before.y() + 10; }));
    QQuickItem &title = shown(u"Larkspan"_s); // of the header: no control
    Desktop::doubleClick(title);
    EXPECT_TRUE(waitUntil([this] { return window->visibility() == QWindow::Maximized; }));
    EXPECT_TRUE(waitUntil([this] { return window->width() == 1600; }));
    Desktop::doubleClick(title);
    EXPECT_TRUE(waitUntil([this] { return window->visibility() == QWindow::Windowed; }));
    EXPECT_TRUE(waitUntil([this] { return window->size() == QSize(1180, 790); }));
}

// Several times, since a list may be left at any point of what it makes. A busy machine may show it between two looks;
// then it is left as it stands, which has to go as well.
TEST_F(WindowTest, ListsThatAreLeftWhileTheyAreStillBeingMadeCauseNoWarning)
{
    open();
    for (int i = 0; i < 60; ++i) {
        makeClips({("kitchen " + std::to_string(i)).c_str()});
    }
    const QQmlIncubationController &lists = *qml.incubationController();
    int timesLeftAtWork = 0;
    for (int time = 0; time < 20; ++time) {
        engine.sortFolder(shoot);
        ASSERT_TRUE(reaches(engine, StageKind::results));
        ASSERT_TRUE(waitUntil([&] { return lists.incubatingObjectCount() > 0 || isShown(u"kitchen 0"_s); }));
        timesLeftAtWork += lists.incubatingObjectCount() > 0 ? 1 : 0;
        for (int turn = 0; turn <= time; ++turn) {
            QCoreApplication::processEvents();
        }
        engine.reset();
        ASSERT_TRUE(waitUntil([&] { return isShown(u"Choose Folder"_s); }));
    }
    EXPECT_GT(timesLeftAtWork, 0);
}

TEST_F(WindowTest, CommandCommaDuringTheIntroSetsPreferencesWhichShowWhenItIsOver)
{
    openInIntro();
    holdIntro();
    const auto *overlay = window->findChild<QObject *>(u"preferencesOverlay"_s);
    Desktop::key(u"ctrl+comma"_s);
    ASSERT_TRUE(waitUntil([this] { return app.property("showPreferences").toBool(); }));
    drain();
    EXPECT_EQ(app.phase(), AppState::Phase::Intro);
    EXPECT_FALSE(overlay->property("visible").toBool());
    app.finishIntro();
    (void)shown(u"General"_s);
    EXPECT_TRUE(overlay->property("visible").toBool());
}

TEST_F(WindowTest, NoOverlayIsShownDuringTheIntro)
{
    openInIntro();
    holdIntro();
    makeClips({"kitchen 1"});
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.setPreviewClip(engine.clips().front());
    app.openPreferences();
    drain();
    for (const QString &overlay : {u"importPromptOverlay"_s, u"previewOverlay"_s, u"preferencesOverlay"_s}) {
        EXPECT_FALSE(window->findChild<QObject *>(overlay)->property("visible").toBool()) << overlay.toStdString();
    }
    Desktop::key(u"Escape"_s); // the same order as ever
    EXPECT_TRUE(waitUntil([this] { return !engine.hasPreview(); }));
    EXPECT_EQ(app.property("showPreferences"), true);
    Desktop::key(u"Escape"_s);
    EXPECT_TRUE(waitUntil([this] { return !app.property("showPreferences").toBool(); }));
}

TEST_F(WindowTest, AnUnknownToolShowsThePageOfTheFirstOneAndLeadsBack)
{
    open();
    app.openTool(u"nothing of ours"_s);
    (void)shown(u"In development"_s);
    EXPECT_TRUE(isShown(LKTool::all().front().name));
    Desktop::click(shown(u"Return to Larkspan"_s));
    EXPECT_TRUE(waitUntil([this] { return app.view() == AppState::ViewMode::Landing; }));
}

TEST_F(WindowTest, TheFirstEscapeClosesThePreviewTheSecondPreferencesAndAThirdLeavesNoTool)
{
    open();
    sort();
    engine.setSelectedBin(u"Kitchen"_s);
    Desktop::click(shown(u"kitchen 1"_s));
    ASSERT_TRUE(waitUntil([this] { return engine.hasPreview(); }));
    (void)shown(u"Done"_s);
    Desktop::key(u"ctrl+comma"_s);
    (void)shown(u"Binnacle Preferences"_s);
    Desktop::key(u"Escape"_s);
    EXPECT_TRUE(waitUntil([this] { return !engine.hasPreview(); }));
    EXPECT_EQ(app.property("showPreferences"), true);
    ASSERT_TRUE(goes(u"Done"_s));
    Desktop::key(u"Escape"_s);
    EXPECT_TRUE(waitUntil([this] { return !app.property("showPreferences").toBool(); }));
    ASSERT_TRUE(goes(u"Binnacle Preferences"_s));
    Desktop::key(u"Escape"_s);
    drain();
    EXPECT_TRUE(app.isSortToolOpen());
    EXPECT_FALSE(app.closing());
}

TEST_F(WindowTest, WhatLiesBelowAnOverlayIsSeenAsThroughFrostedGlass)
{
    open();
    sort();
    engine.setSelectedBin(u"Kitchen"_s);
    QQuickItem &card = shown(u"kitchen 1"_s);
    const auto sharpness = [&] { // of what stands left of the overlays' cards
        const QImage picture = window->grabWindow().copy(60, 60, 150, 600).convertToFormat(QImage::Format_Grayscale8);
        int steepest = 0;
        for (int y = 0; y < picture.height(); ++y) {
            const uchar *line = picture.constScanLine(y);
            for (int x = 1; x < picture.width(); ++x) {
                steepest = std::max(steepest, std::abs(line[x] - line[x - 1]));
            }
        }
        return steepest;
    };
    ASSERT_TRUE(waitUntil([&] { return sharpness() > 30; }));
    const int sharp = sharpness();
    // A scrim alone leaves half of it, or more.
    const auto isBlurred = [&] { return sharpness() < sharp / 3; };
    Desktop::click(card);
    (void)shown(u"Done"_s);
    EXPECT_TRUE(waitUntil(isBlurred));
    engine.closePreview();
    EXPECT_TRUE(waitUntil([&] { return sharpness() > sharp * 3 / 4; }));
    app.openPreferences();
    EXPECT_TRUE(waitUntil(isBlurred));
}

TEST_F(WindowTest, BackShowsTheLauncherAndTheToolComesBackAsItWas)
{
    open();
    sort();
    (void)shown(u"Sort Again"_s);
    app.closeTool();
    ASSERT_TRUE(goes(u"Sort Again"_s));
    EXPECT_TRUE(waitUntil([this] { return app.view() == AppState::ViewMode::Landing; }));
    app.openTool(u"binnacle"_s);
    (void)shown(u"Sort Again"_s);
}

TEST_F(WindowTest, TheTitleTellsTheProgressOnlyWhileTheWindowIsNotInFront)
{
    open();
    sort();
    startCopy();
    EXPECT_EQ(window->title(), u"Larkspan"_s);
    QWindow other;
    other.resize(200, 200);
    other.show();
    other.requestActivate();
    EXPECT_TRUE(waitUntil([this] { return window->title() == u"0% – Larkspan"_s; })) << window->title().toStdString();
    other.hide();
    window->requestActivate();
    EXPECT_TRUE(waitUntil([this] { return window->title() == u"Larkspan"_s; }));
    copying.open();
    EXPECT_TRUE(reaches(engine, StageKind::done));
}

TEST_F(WindowTest, TheToolShrinksAndBlursAndIsStillThereWhenTheLauncherTakesItsPlace)
{
    open();
    const QQuickItem *tool = findNamed(window->contentItem(), u"tool"_s);
    const QQuickItem *launcher = findNamed(window->contentItem(), u"launcher"_s);
    ASSERT_TRUE(waitUntil([&] { return tool->opacity() == 1 && tool->scale() == 1; }));
    double smallest = 1;
    double mostBlurred = 0;
    double emptiest = 1;
    double opacityWhileClosing = 1;
    const QObject watch; // goes before what it writes to
    QObject::connect(window, &QQuickWindow::afterAnimating, &watch, [&] {
        smallest = std::min(smallest, tool->scale());
        mostBlurred = std::max(mostBlurred, tool->property("blur").toDouble());
        emptiest = std::min(emptiest, std::max(tool->opacity(), launcher->opacity()));
        if (app.closing()) {
            opacityWhileClosing = std::min(opacityWhileClosing, tool->opacity());
        }
    });
    app.closeTool();
    EXPECT_TRUE(waitUntil([&] { return launcher->opacity() == 1 && !tool->isVisible(); }));
    EXPECT_EQ(smallest, 0.92);
    EXPECT_EQ(mostBlurred, 8);
    EXPECT_EQ(opacityWhileClosing, 1);
    EXPECT_GT(emptiest, 0.4);    // the one comes as the other goes
    EXPECT_EQ(tool->scale(), 1); // for the next time, when it comes as large as it is
    app.openTool(u"binnacle"_s);
    smallest = 1;
    EXPECT_TRUE(waitUntil([&] { return tool->opacity() == 1; }));
    EXPECT_EQ(smallest, 1);
}

TEST_F(WindowTest, WhatComesAndGoesTakesTheTimeThatIsNamedForIt)
{
    open();
    const LKMotionScale motion = LK::instance().motion();
    EXPECT_EQ(motion.toolOut, 280);
    EXPECT_EQ(motion.toolIn, 380);
    EXPECT_EQ(motion.overlay, 180);
    EXPECT_EQ(motion.afterIntro, 650);
    const QQuickItem *tool = findNamed(window->contentItem(), u"tool"_s);
    EXPECT_EQ(tool->property("pace"), motion.toolIn);
    app.closeTool();
    EXPECT_EQ(tool->property("pace"), motion.toolOut);
    app.openTool(u"binnacle"_s);
    EXPECT_EQ(tool->property("pace"), motion.toolIn);
}

TEST_F(WindowTest, EachOverlayHasItsOwnScrim)
{
    open();
    const auto scrimOf = [this](const QString &overlay) {
        return window->findChild<QObject *>(overlay)->property("scrimOpacity").toDouble();
    };
    EXPECT_EQ(scrimOf(u"importPromptOverlay"_s), 0.45);
    EXPECT_EQ(scrimOf(u"previewOverlay"_s), 0.5);
    EXPECT_EQ(scrimOf(u"preferencesOverlay"_s), 0.4);
}

TEST_F(WindowTest, AnOverlayIsLeftByAPressOnTheUppermostStripOfItsScrimByWhichTheWindowIsMoved)
{
    open();
    app.openPreferences();
    (void)shown(u"Binnacle Preferences"_s);
    const QPoint strip = window->mapToGlobal(QPoint(590, 20));
    const QPoint before = window->position();
    Desktop::drag(strip, strip + QPoint(60, 40));
    EXPECT_TRUE(waitUntil([&] { return window->x() > before.x() + 20; }));
    EXPECT_TRUE(app.property("showPreferences").toBool());
    const QPoint moved = window->mapToGlobal(QPoint(590, 20));
    Desktop::drag(moved, moved);
    EXPECT_TRUE(waitUntil([this] { return !app.property("showPreferences").toBool(); }));
}

namespace {

// The steepest change of brightness between two neighbours of a picture's line.
int sharpnessOf(const QImage &picture)
{
    const QImage gray = picture.convertToFormat(QImage::Format_Grayscale8);
    int steepest = 0;
    for (int y = 0; y < gray.height(); ++y) {
        const uchar *line = gray.constScanLine(y);
        for (int x = 1; x < gray.width(); ++x) {
            steepest = std::max(steepest, std::abs(line[x] - line[x - 1]));
        }
    }
    return steepest;
}

} // namespace

TEST_F(WindowTest, AnOverlayAndAPopoverBelowAnotherAreSeenAsThroughFrostedGlass)
{
    open();
    sort();
    engine.setSelectedBin(u"Kitchen"_s);
    Desktop::click(shown(u"kitchen 1"_s));
    (void)shown(u"Done"_s);
    const QRect place(915, 140, 80, 520); // the preview's right edge, which Preferences leave in sight
    const auto sharpness = [&] { return sharpnessOf(window->grabWindow().copy(place)); };
    ASSERT_TRUE(waitUntil([&] { return sharpness() > 60; }));
    const int sharp = sharpness();
    app.openPreferences();
    ASSERT_TRUE(waitUntil(
        [this] { return window->findChild<QObject *>(u"preferencesOverlay"_s)->property("opened").toBool(); }));
    EXPECT_TRUE(waitUntil([&] { return sharpness() < sharp / 4; })); // a scrim alone leaves more than half
    app.setProperty("showPreferences", false);
    EXPECT_TRUE(waitUntil([&] { return sharpness() > sharp * 3 / 4; }));
    engine.closePreview();
    ASSERT_TRUE(goes(u"Done"_s));

    Desktop::click(shown(u"Projects"_s));
    QQuickItem &heading = shown(u"Reopen a sorted shoot, or start a new one."_s);
    const QRect words = heading.mapRectToScene(heading.boundingRect()).toAlignedRect();
    const auto legibility = [&] { return sharpnessOf(window->grabWindow().copy(words)); };
    ASSERT_TRUE(waitUntil([&] { return legibility() > 40; }));
    const int legible = legibility();
    Desktop::key(u"ctrl+comma"_s);
    EXPECT_TRUE(waitUntil([&] { return legibility() < legible / 4; }));
}
