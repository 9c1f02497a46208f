// The intro as a display shows it, at moments of its timeline.
#include <cmath>

#include "design/IntroTimeline.h"
#include "design/LK.h"
#include "tests/support/Scene.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize windowSize(1180, 790);
constexpr QPoint middle(590, 395);

class IntroPictures : public testing::TestWithParam<LK::Theme>
{
protected:
    IntroPictures()
    {
        LK::instance().setTheme(GetParam());
        m_scene.window().setColor(LK::instance().palette().surfaceWindow);
    }
    ~IntroPictures() override { LK::instance().setTheme(LK::Theme::Dark); }

    QImage at(double seconds)
    {
        m_scene.root()->setProperty("seconds", seconds);
        QImage shown = m_scene.window().grabWindow();
        if (const QString folder = qEnvironmentVariable("LARKSPAN_PICTURES"); !folder.isEmpty()) {
            shown.save(folder + u"/intro-%1-%2.png"_s.arg(QString::number(seconds),
                                                          GetParam() == LK::Theme::Light ? u"light"_s : u"dark"_s));
        }
        return shown;
    }

    // Returns the distance of a pixel from the background, 0 to 765.
    static int lit(const QImage &picture, QPoint at)
    {
        const QColor color = picture.pixelColor(at);
        const QColor background = LK::instance().palette().surfaceWindow;
        return std::abs(color.red() - background.red()) + std::abs(color.green() - background.green()) +
               std::abs(color.blue() - background.blue());
    }

    // The brightest of a few pixels around, since edges fall between pixels.
    static int litAround(const QImage &picture, QPoint at)
    {
        int brightest = 0;
        for (int x = -2; x <= 2; ++x) {
            for (int y = -2; y <= 2; ++y) {
                brightest = std::max(brightest, lit(picture, at + QPoint(x, y)));
            }
        }
        return brightest;
    }

private:
    Scene m_scene{"import Larkspan.Design\nIntroView { anchors.fill: parent; plays: false }", {}, windowSize};
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Themes, IntroPictures, testing::Values(LK::Theme::Dark, LK::Theme::Light));

TEST_P(IntroPictures, AtTheBeginningTheWindowIsEmpty)
{
    const QImage shown = at(0.0);
    EXPECT_EQ(litAround(shown, middle), 0);
    EXPECT_EQ(litAround(shown, {middle.x(), middle.y() - 48}), 0);
}

// The strip is 704 wide around the middle and 96 high: its first frame begins at 238, its second at 326, and the line
// of the top edge lies at 347.
TEST_P(IntroPictures, WhenItHasEnteredTheStripLiesAcrossTheMiddle)
{
    const QImage shown = at(0.34);
    EXPECT_GT(litAround(shown, {280, 348}), 60);
    EXPECT_GT(litAround(shown, {280, 442}), 60);
    EXPECT_GT(litAround(shown, {239, 395}), 60);
    EXPECT_GT(litAround(shown, {327, 395}), 60);
    EXPECT_EQ(litAround(shown, {280, 395}), 0); // frames are empty
    EXPECT_EQ(litAround(shown, {230, 395}), 0);
}

TEST_P(IntroPictures, AtTheEndOfTheScrubTheAccentFrameHasMovedToTheRightOfTheMiddle)
{
    // Frame 7 begins at 238 + 7 × 88 - 176 = 678; without a blade it would be seen there.
    const QImage shown = at(1.69);
    const double scrub = introTimeline::lookAt(1.69).scrub;
    const QPoint edge(238 + 7 * 88 + static_cast<int>(std::lround(scrub)), 395);
    const QColor accent = LK::instance().palette().accent;
    bool hasAccent = false;
    for (int x = -2; x <= 2; ++x) {
        const QColor color = shown.pixelColor(edge + QPoint(x, 0));
        hasAccent |= color.blue() > 150 && color.blue() > color.red() + 60;
    }
    EXPECT_TRUE(hasAccent) << accent.name().toStdString();
}

TEST_P(IntroPictures, TheBladeGlowsWhereItFalls)
{
    // It is 150 high around 60 below the middle at the end of its fall.
    const QImage shown = at(1.99);
    const double y = introTimeline::lookAt(1.99).bladeY;
    EXPECT_GT(lit(shown, {middle.x(), middle.y() + static_cast<int>(y)}), 200);
    EXPECT_GT(litAround(shown, {middle.x() + 6, middle.y() + static_cast<int>(y)}), 8);
    EXPECT_EQ(lit(shown, {middle.x(), middle.y() - 210}), 0);
}

TEST_P(IntroPictures, TheHalvesTurnAwayFromTheCutWhileTheIconIsNotYetThere)
{
    const QImage shown = at(2.1);
    const IntroLook look = introTimeline::lookAt(2.1);
    EXPECT_GT(look.halfShift, 100.0);
    // The gap.
    EXPECT_EQ(litAround(shown, {middle.x() + 40, middle.y()}), 0);
    EXPECT_EQ(litAround(shown, {middle.x() - 40, middle.y()}), 0);
}

TEST_P(IntroPictures, NothingOfTheNextFrameIsLeftAtTheCutOfATurnedHalf)
{
    // The frame beyond the left half begins exactly where that ends.
    const QImage shown = at(2.05);
    const IntroLook look = introTimeline::lookAt(2.05);
    EXPECT_GT(look.stripOpacity, 0.2);
    EXPECT_LT(litAround(shown, middle - QPoint(static_cast<int>(std::lround(look.halfShift)), -20)), 6);
}

TEST_P(IntroPictures, TheIconStandsInTheMiddleFromThenOn)
{
    for (const double seconds : {2.53, 3.5}) {
        const QImage shown = at(seconds);
        EXPECT_GT(lit(shown, {middle.x() - 14, middle.y()}), 100) << seconds; // the lit bar
        EXPECT_EQ(litAround(shown, {238, 395}), 0) << seconds;
    }
}

TEST_P(IntroPictures, AtTheEndTheWindowIsEmptyAgain)
{
    EXPECT_LT(lit(at(4.625), {middle.x() - 14, middle.y()}), 60);
    EXPECT_EQ(lit(at(4.98), {middle.x() - 14, middle.y()}), 0);
}
