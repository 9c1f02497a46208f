#include <gtest/gtest.h>
#include <QtGui/QAccessible>
#include <QtTest/QTest>

#include "tests/support/Items.h"
#include "tests/support/Scene.h"
#include "tests/support/ScreenReader.h"

using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

const std::string twoFormats = R"(
    import QtQuick
    import Larkspan.Shell
    Column {
        id: page
        property string format: 'csv'
        HandoffFormatRow { width: 300; label: 'Table'; detail: 'csv'; selected: page.format === detail
                           onActivated: page.format = detail }
        HandoffFormatRow { width: 300; label: 'Timeline'; detail: 'otio'; selected: page.format === detail
                           onActivated: page.format = detail }
    }
)";

QAccessible::State toldOf(const Scene &scene, const QString &label)
{
    return QAccessible::queryAccessibleInterface(findShown(scene.root(), label))->state();
}

} // namespace

TEST(HandoffFormatRow, TellsWhichFormatIsChosenToAssistiveTechnologyThatComesLater)
{
    Scene scene(twoFormats);
    const ScreenReader reader;
    EXPECT_TRUE(toldOf(scene, u"Table"_s).checkable);
    EXPECT_TRUE(toldOf(scene, u"Table"_s).checked);
    EXPECT_FALSE(toldOf(scene, u"Timeline"_s).checked);
    for (int click = 0; click < 2; ++click) { // the second changes nothing
        scene.click(u"Timeline"_s);
        EXPECT_EQ(scene.root()->property("format").toString(), u"otio"_s);
        EXPECT_TRUE(toldOf(scene, u"Timeline"_s).checked);
        EXPECT_FALSE(toldOf(scene, u"Table"_s).checked);
    }
    scene.root()->setProperty("format", u"csv"_s); // as the arrows do
    EXPECT_TRUE(toldOf(scene, u"Table"_s).checked);
    EXPECT_FALSE(toldOf(scene, u"Timeline"_s).checked);
}
