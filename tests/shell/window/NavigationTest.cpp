#include "shell/window/Navigation.h"

#include <memory>

#include <gmock/gmock.h>
#include <QtCore/QPointer>

#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;

namespace {

QTimer &closingTimer(const Navigation &place)
{
    return *place.findChild<QTimer *>();
}

} // namespace

TEST(Navigation, TheSortToolIsToldOpenWhenTheViewOrTheToolChanges)
{
    Navigation place;
    std::vector<bool> told;
    QObject::connect(&place, &Navigation::isSortToolOpenChanged, [&] { told.push_back(place.isSortToolOpen()); });
    place.openTool(u"binnacle"_s);
    EXPECT_THAT(told, ElementsAre(true));
    place.openTool(u"huelock"_s);
    EXPECT_THAT(told, ElementsAre(true, false));
}

TEST(Navigation, ClosingAToolLetsItLeaveBeforeTheLauncherComes)
{
    Navigation place;
    place.openTool(u"binnacle"_s);
    place.closeTool();
    EXPECT_TRUE(place.isClosing());
    EXPECT_TRUE(place.hasTool());
    EXPECT_EQ(closingTimer(place).intervalAsDuration(), std::chrono::milliseconds(270));
    EXPECT_TRUE(closingTimer(place).isSingleShot());
    EXPECT_TRUE(waitUntil([&] { return !place.hasTool(); }));
    EXPECT_FALSE(place.isClosing());
    EXPECT_FALSE(place.isSortToolOpen());
    EXPECT_EQ(place.toolID(), u"binnacle"_s) << "the one that was open last";
}

TEST(Navigation, ClosingAToolTwiceEndsInTheLauncherWithNothingClosing)
{
    Navigation place;
    place.openTool(u"binnacle"_s);
    place.closeTool();
    place.closeTool();
    EXPECT_TRUE(waitUntil([&] { return !place.hasTool(); }));
    EXPECT_FALSE(place.isClosing());
    EXPECT_FALSE(closingTimer(place).isActive());
}

TEST(Navigation, AToolOpenedWhileAnotherClosesStaysOpen)
{
    Navigation place;
    place.openTool(u"huelock"_s);
    place.closeTool();
    place.openTool(u"binnacle"_s);
    EXPECT_FALSE(place.isClosing());
    EXPECT_FALSE(closingTimer(place).isActive());
    EXPECT_TRUE(place.isSortToolOpen());
}

TEST(Navigation, IsNotCalledBackWhenItGoesWhileAToolCloses)
{
    auto place = std::make_unique<Navigation>();
    place->closeTool();
    const QPointer closing = &closingTimer(*place);
    EXPECT_TRUE(closing->isActive());
    place.reset();
    EXPECT_TRUE(closing.isNull());
}

TEST(Navigation, TheIntroEndsOnce)
{
    Navigation place;
    int changes = 0;
    QObject::connect(&place, &Navigation::introEnded, [&changes] { ++changes; });
    EXPECT_FALSE(place.isIntroOver());
    place.finishIntro();
    place.finishIntro();
    EXPECT_TRUE(place.isIntroOver());
    EXPECT_EQ(changes, 1);
}

TEST(Navigation, PreferencesOpenOnSortingInTheSortToolAndOnGeneralElsewhere)
{
    Navigation place;
    const auto tabOf = [&place] {
        place.showPreferences(false);
        place.openPreferences();
        EXPECT_TRUE(place.showsPreferences());
        return place.preferencesTab();
    };
    EXPECT_EQ(tabOf(), u"General"_s);
    place.openTool(u"binnacle"_s);
    EXPECT_EQ(tabOf(), u"Sorting"_s);
    place.openTool(u"earmark"_s); // a placeholder
    EXPECT_EQ(tabOf(), u"General"_s);
}

TEST(Navigation, PreferencesMayBeOpenedDuringTheIntro)
{
    Navigation place;
    place.openPreferences();
    EXPECT_FALSE(place.isIntroOver());
    EXPECT_TRUE(place.showsPreferences());
}
