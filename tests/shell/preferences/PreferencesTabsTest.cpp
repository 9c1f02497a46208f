#include "shell/preferences/PreferencesTabs.h"

#include <gmock/gmock.h>
#include <QtCore/QVariant>

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;

TEST(PreferencesTabs, EachTabIsShownWhenItIsAskedFor)
{
    EXPECT_THAT(PreferencesTabs::names(), ElementsAre(u"General"_s, u"Account"_s, u"Sorting"_s, u"Import"_s));
    PreferencesTabs tabs;
    for (const QString &name : PreferencesTabs::names()) {
        tabs.setProperty("wanted", name);
        EXPECT_EQ(tabs.current(), name);
    }
}

TEST(PreferencesTabs, AnyOtherNameShowsTheFirst)
{
    PreferencesTabs tabs;
    EXPECT_EQ(tabs.current(), u"General"_s);
    for (const QString &name : {u"Colours"_s, u"sorting"_s, QString()}) {
        tabs.setProperty("wanted", u"Import"_s);
        tabs.setProperty("wanted", name);
        EXPECT_EQ(tabs.current(), u"General"_s) << name.toStdString();
    }
}

TEST(PreferencesTabs, TheWordsAreThoseOfTheOpenTool)
{
    PreferencesTabs tabs;
    EXPECT_EQ(tabs.title(), u"Larkspan Preferences"_s);
    EXPECT_EQ(tabs.scope(), u"Settings apply across every tool."_s);
    int changes = 0;
    QObject::connect(&tabs, &PreferencesTabs::changed, [&changes] { ++changes; });
    tabs.setProperty("isForSortTool", true);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(tabs.title(), u"Binnacle Preferences"_s);
    EXPECT_EQ(tabs.scope(), u"Changes apply to the next sort."_s);
}
