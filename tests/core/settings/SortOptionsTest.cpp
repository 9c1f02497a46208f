// The choices of the preferences: how they read, and how they are stored.
#include "core/settings/SortOptions.h"

#include <gtest/gtest.h>

#include "core/settings/HandoffFormat.h"
#include "core/settings/NLE.h"

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;

TEST(SortOptions, ChoicesReadAsThePreferencesNameThem)
{
    EXPECT_EQ(fileHandlingLabel(FileHandling::inPlace), u"Leave in place"_s);
    EXPECT_EQ(fileHandlingLabel(FileHandling::copy), u"Copy into folders"_s);
    EXPECT_EQ(fileHandlingLabel(FileHandling::move), u"Move into folders"_s);
    EXPECT_EQ(modelTierLabel(ModelTier::local), u"On This Mac"_s);
    EXPECT_EQ(modelTierLabel(ModelTier::cloud), u"Cloud AI"_s);
    EXPECT_EQ(nleLabel(NLE::finalCut), u"Final Cut Pro"_s);
    EXPECT_EQ(nleLabel(NLE::resolve), u"DaVinci Resolve"_s);
    EXPECT_EQ(nleLabel(NLE::premiere), u"Premiere Pro"_s);
}

TEST(SortOptions, EveryChoiceIsReadBackFromItsStoredForm)
{
    for (const auto &[editor, stored] : {std::pair(NLE::finalCut, u"finalCut"_s), std::pair(NLE::resolve, u"resolve"_s),
                                         std::pair(NLE::premiere, u"premiere"_s)}) {
        EXPECT_EQ(nleRawValue(editor), stored);
        EXPECT_EQ(nleFromRawValue(stored), editor);
    }
    for (const auto &[format, stored] :
         {std::pair(HandoffFormat::kdenlive, u"kdenlive"_s),
          std::pair(HandoffFormat::fcpxmlTimeline, u"fcpxml-timeline"_s), std::pair(HandoffFormat::otio, u"otio"_s),
          std::pair(HandoffFormat::fcpxmlTimecode, u"fcpxml-timecode"_s), std::pair(HandoffFormat::csv, u"csv"_s)}) {
        EXPECT_EQ(handoffRawValue(format), stored);
        EXPECT_EQ(handoffFromRawValue(stored), format);
    }
    EXPECT_EQ(handoffFromRawValue(u"Kdenlive"_s), std::nullopt);
    for (const auto &[handling, stored] :
         {std::pair(FileHandling::inPlace, u"inPlace"_s), std::pair(FileHandling::copy, u"copy"_s),
          std::pair(FileHandling::move, u"move"_s)}) {
        EXPECT_EQ(fileHandlingRawValue(handling), stored);
        EXPECT_EQ(fileHandlingFromRawValue(stored), handling);
    }
    for (const auto &[level, stored] :
         {std::pair(VerifyLevel::sizeOnly, u"sizeOnly"_s), std::pair(VerifyLevel::checksum, u"checksum"_s)}) {
        EXPECT_EQ(verifyLevelRawValue(level), stored);
        EXPECT_EQ(verifyLevelFromRawValue(stored), level);
    }
    for (const auto &[tier, stored] :
         {std::pair(ModelTier::local, u"local"_s), std::pair(ModelTier::cloud, u"cloud"_s)}) {
        EXPECT_EQ(modelTierRawValue(tier), stored);
        EXPECT_EQ(modelTierFromRawValue(stored), tier);
    }
}

TEST(HandoffFormat, FilesStandBesideTheEventUnderNamesOfTheirOwn)
{
    EXPECT_EQ(handoffSuffix(HandoffFormat::kdenlive), u".kdenlive"_s);
    EXPECT_EQ(handoffSuffix(HandoffFormat::fcpxmlTimeline), u" Timeline.fcpxml"_s);
    EXPECT_EQ(handoffSuffix(HandoffFormat::otio), u".otio"_s);
    EXPECT_EQ(handoffSuffix(HandoffFormat::fcpxmlTimecode), u" Timecode.fcpxml"_s);
    EXPECT_EQ(handoffSuffix(HandoffFormat::csv), u" Keywords.csv"_s);
}
