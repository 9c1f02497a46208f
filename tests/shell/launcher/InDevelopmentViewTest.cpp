#include <QtTest/QTest>

#include "shell/launcher/LKTool.h"
#include "tests/shell/launcher/LauncherState.h"
#include "tests/support/Scene.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

class InDevelopmentViewTest : public testing::Test
{
protected:
    InDevelopmentViewTest() { app.openTool(u"huelock"_s); }

    LauncherState state;
    AppState &app = state.app;
    Scene scene{
        "import Larkspan.Shell\nInDevelopmentView { anchors.fill: parent }",
        {{u"app"_s, QVariant::fromValue(&app)}, {u"tool"_s, QVariant::fromValue(LKTool::current(u"huelock"_s))}},
        {980, 640}};

    // Once everything has found its place.
    void click(const QString &text)
    {
        (void)scene.window().grabWindow();
        scene.click(text);
    }
    void write(std::string_view text)
    {
        for (const char letter : text) {
            QTest::keyClick(&scene.window(), letter);
        }
    }
    bool shows(const QString &text) { return findShown(scene.root(), text) != nullptr; }
};

} // namespace

TEST_F(InDevelopmentViewTest, SaysWhatIsComing)
{
    const LKTool &tool = LKTool::current(u"huelock"_s);
    EXPECT_TRUE(shows(u"In development"_s));
    EXPECT_TRUE(shows(tool.name));
    EXPECT_TRUE(shows(tool.blurb));
    for (const QString &bullet : tool.bullets) {
        EXPECT_TRUE(shows(bullet)) << bullet.toStdString();
    }
}

TEST_F(InDevelopmentViewTest, StandsInOneColumnOfAtMost520PointsInTheMiddle)
{
    const LKTool &tool = LKTool::current(u"huelock"_s);
    double last = 44; // below the header
    for (const QString &text : {tool.glyph, u"In development"_s, tool.name, tool.blurb, tool.bullets[0],
                                tool.bullets[1], tool.bullets[2], u"Tell me when it ships"_s}) {
        const QQuickItem *item = findShown(scene.root(), text);
        ASSERT_NE(item, nullptr) << text.toStdString();
        const QRectF place = item->mapRectToScene(item->boundingRect());
        EXPECT_GT(place.top(), last) << text.toStdString();
        EXPECT_GE(place.left(), 490 - 260) << text.toStdString();
        EXPECT_LE(place.right(), 490 + 260) << text.toStdString();
        last = place.top();
    }
    EXPECT_EQ(findShown(scene.root(), tool.blurb)->width(), 520);
}

TEST_F(InDevelopmentViewTest, TheFieldShowsTheFormOfAnAddressAndReturnSendsIt)
{
    click(u"Tell me when it ships"_s);
    const auto hasPlaceholder = [](const QQuickItem *item) {
        return item->property("placeholderText").toString().contains(u'@');
    };
    const auto fields = scene.root()->findChildren<QQuickItem *>();
    EXPECT_TRUE(std::ranges::any_of(fields, hasPlaceholder));
    write("bo@example.com");
    scene.key(Qt::Key_Return);
    EXPECT_TRUE(shows(u"Noted. We'll email bo@example.com when Huelock ships."_s));
}

TEST_F(InDevelopmentViewTest, StartsClosedOpensItsFormAndThanksByTheToolsName)
{
    EXPECT_FALSE(shows(u"Notify me"_s));
    click(u"Tell me when it ships"_s);
    EXPECT_TRUE(app.property("shipOpen").toBool());
    EXPECT_FALSE(shows(u"Tell me when it ships"_s));
    EXPECT_TRUE(shows(u"Notify me"_s));
    EXPECT_TRUE(shows(u"Return to Larkspan"_s));
    write("ann@example.com");
    EXPECT_EQ(app.property("shipEmail"), u"ann@example.com"_s);
    click(u"Notify me"_s);
    EXPECT_TRUE(app.property("shipSent").toBool());
    EXPECT_TRUE(shows(u"Noted. We'll email ann@example.com when Huelock ships."_s));
    EXPECT_FALSE(shows(u"Notify me"_s));
}

TEST_F(InDevelopmentViewTest, BlanksAreNoAddress)
{
    click(u"Tell me when it ships"_s);
    EXPECT_FALSE(findShown(scene.root(), u"Notify me"_s)->isEnabled());
    write("  ");
    EXPECT_FALSE(findShown(scene.root(), u"Notify me"_s)->isEnabled());
    scene.key(Qt::Key_Return);
    EXPECT_FALSE(app.property("shipSent").toBool());
    write("a@b.c");
    EXPECT_TRUE(findShown(scene.root(), u"Notify me"_s)->isEnabled());
}

TEST_F(InDevelopmentViewTest, AnAddressIsNoPattern)
{
    click(u"Tell me when it ships"_s);
    write("a%2b@x.de");
    scene.key(Qt::Key_Return);
    EXPECT_TRUE(shows(u"Noted. We'll email a%2b@x.de when Huelock ships."_s));
}

TEST_F(InDevelopmentViewTest, ComingBackShowsItClosedAgain)
{
    click(u"Tell me when it ships"_s);
    write("ann@example.com");
    click(u"Notify me"_s);
    click(u"Return to Larkspan"_s);
    EXPECT_TRUE(app.closing());
    EXPECT_TRUE(waitUntil([&] { return app.view() == AppState::ViewMode::Landing; }));
    app.openTool(u"huelock"_s);
    EXPECT_TRUE(shows(u"Tell me when it ships"_s));
    EXPECT_EQ(app.property("shipEmail"), QString());
}
