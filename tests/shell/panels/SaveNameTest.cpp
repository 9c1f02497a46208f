#include "shell/panels/SaveName.h"

#include <gmock/gmock.h>

#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

TEST(SaveName, GetsTheSuffixUnlessItHasOne)
{
    EXPECT_EQ(saveName(u"House"_s, u"csv"_s), u"House.csv"_s);
    EXPECT_EQ(saveName(u"House.csv"_s, u"csv"_s), u"House.csv"_s);
    EXPECT_EQ(saveName(u"House.txt"_s, u"csv"_s), u"House.txt"_s);
    EXPECT_EQ(saveName(u"  House  "_s, u"csv"_s), u"House.csv"_s);
}

TEST(SaveName, IsNoneForWhatNoFileCanBeCalled)
{
    for (const QString &name : {u""_s, u"  "_s, u"."_s, u".."_s, u"a/b"_s, u"/"_s}) {
        EXPECT_EQ(saveName(name, u"csv"_s), std::nullopt) << name.toStdString();
    }
}

TEST(SaveName, ThePlaceIsFreeTakenOrAFolder)
{
    const TempFolder folder;
    (void)folder.write("taken.csv");
    EXPECT_FALSE(lookAtPlace(folder / "free.csv").exists);
    EXPECT_FALSE(lookAtPlace(folder / "free.csv").problem);
    EXPECT_TRUE(lookAtPlace(folder / "taken.csv").exists);
    EXPECT_FALSE(lookAtPlace(folder / "taken.csv").isFolder);
    EXPECT_TRUE(lookAtPlace(folder.path()).isFolder);
    EXPECT_EQ(lookAtPlace(folder / "gone" / "a.csv").problem, std::errc::no_such_file_or_directory);
}
