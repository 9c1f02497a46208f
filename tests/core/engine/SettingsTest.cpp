#include <random>

#include "core/bins/Coverage.h"
#include "core/engine/SortSettings.h"
#include "core/settings/CloudSettings.h"
#include "core/settings/SettingsStore.h"
#include "tests/core/engine/SortEngineFixture.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

class SettingsTest : public SortEngineTest
{
protected:
    // What a program finds that starts now.
    SettingsStore store() const { return SettingsStore(QString::fromStdString(file.native())); }

    void writeSettings(const std::string &lines) const { (void)settingsFolder.write("settings.ini", lines); }

    SortSeams keeping(SettingsStore &settings)
    {
        auto parts = seams();
        parts.settings = &settings;
        return parts;
    }

    const TempFolder settingsFolder;
    const fs::path file = settingsFolder / "settings.ini";
    const SortOptions noDefault{.showClipCounts = false,
                                .sendUnsureToReview = false,
                                .splitRepeatedRooms = false,
                                .tagOpenPlanTwice = false,
                                .keepDroneExclusive = false,
                                .openEditorAfterExport = false,
                                .writeNextToFootage = false,
                                .fileHandling = FileHandling::move,
                                .verifyLevel = VerifyLevel::checksum};
};

TEST_F(SettingsTest, AFreshInstallHasAllSevenSwitchesOnAndTheFirstOfEveryChoice)
{
    SettingsStore settings = store();
    const SortEngine engine(keeping(settings));
    EXPECT_EQ(engine.options(), SortOptions());
    EXPECT_TRUE(engine.options().showClipCounts && engine.options().sendUnsureToReview &&
                engine.options().splitRepeatedRooms && engine.options().tagOpenPlanTwice &&
                engine.options().keepDroneExclusive && engine.options().openEditorAfterExport &&
                engine.options().writeNextToFootage);
    EXPECT_EQ(engine.options().fileHandling, FileHandling::inPlace);
    EXPECT_EQ(engine.options().verifyLevel, VerifyLevel::sizeOnly);
    EXPECT_EQ(engine.modelTier(), ModelTier::local);
    EXPECT_EQ(engine.target(), NLE::finalCut);
    EXPECT_EQ(engine.importRoot(), std::nullopt);
    EXPECT_THAT(engine.recents(), IsEmpty());
    EXPECT_FALSE(fs::exists(file)) << "defaults aren't written back";
}

TEST_F(SettingsTest, EverySettingComesBackInTheNextRun)
{
    {
        SettingsStore settings = store();
        SortEngine engine(keeping(settings));
        engine.setOptions(noDefault);
        engine.setModelTier(ModelTier::cloud);
        engine.setTarget(NLE::resolve);
        engine.setImportRoot(FileUrl("/Volumes/Shoots, 2026"));
        engine.sortFolder(FileUrl("/é/A&B \"1\""));
    }
    SettingsStore settings = store();
    const SortEngine engine(keeping(settings));
    EXPECT_EQ(engine.options(), noDefault);
    EXPECT_EQ(engine.modelTier(), ModelTier::cloud);
    EXPECT_EQ(engine.target(), NLE::resolve);
    EXPECT_EQ(engine.importRoot(), FileUrl("/Volumes/Shoots, 2026"));
    EXPECT_THAT(engine.recents(), ElementsAre(Recent{u"A&B \"1\""_s, FileUrl("/é/A&B \"1\"")}));
}

TEST_F(SettingsTest, AnUnknownFileHandlingReadsAsInPlaceAndAnUnknownVerifyLevelAsSizeOnly)
{
    writeSettings("[General]\nlkFileHandling=shred\nlkVerifyLevel=prayer\nmodelTier=Cloud\ndefaultNLE=imovie\n");
    EXPECT_EQ(loadSortOptions(store()), SortOptions());
    EXPECT_EQ(loadModelTier(store()), ModelTier::local);
    EXPECT_EQ(loadDefaultNLE(store()), NLE::finalCut);
}

TEST_F(SettingsTest, AStoredFalseReadsAsFalseAndNotAsTheDefault)
{
    writeSettings("[General]\nlkOpenEditor=false\nlkSplitRooms=0\n");
    EXPECT_EQ(loadSortOptions(store()), (SortOptions{.splitRepeatedRooms = false, .openEditorAfterExport = false}));
}

TEST_F(SettingsTest, ASwitchMayBeWrittenAsPeopleWriteIt)
{
    writeSettings("[General]\nlkOpenEditor=False\nlkSplitRooms=NO\nlkSendUnsure=\" no \"\nlkOpenPlan=Yes\n");
    EXPECT_EQ(loadSortOptions(store()),
              (SortOptions{.sendUnsureToReview = false, .splitRepeatedRooms = false, .openEditorAfterExport = false}));
    EXPECT_EQ(store().boolean(u"lkOpenPlan"_s), true);
    writeSettings("[General]\na=TRUE\nb=1\nc=0\nd=2\n");
    EXPECT_EQ(store().boolean(u"a"_s), true);
    EXPECT_EQ(store().boolean(u"b"_s), true);
    EXPECT_EQ(store().boolean(u"c"_s), false);
    EXPECT_EQ(store().boolean(u"d"_s), std::nullopt);
    EXPECT_EQ(store().boolean(u"e"_s), std::nullopt);
}

TEST_F(SettingsTest, ASwitchThatHoldsNoBooleanReadsAsTheDefault)
{
    writeSettings("[General]\nlkOpenEditor=perhaps\nlkSplitRooms=\nlkOpenPlan=a, b\nlkSendUnsure=@ByteArray(false)\n");
    EXPECT_EQ(loadSortOptions(store()), SortOptions());
}

TEST_F(SettingsTest, ChangingOneOptionRewritesAllNineKeys)
{
    {
        SettingsStore settings = store();
        SortEngine engine(keeping(settings));
        engine.setOptions({.tagOpenPlanTwice = false});
    }
    EXPECT_EQ(bytesOf(file), "[General]\n"
                             "lkDroneExclusive=true\n"
                             "lkFileHandling=inPlace\n"
                             "lkOpenEditor=true\n"
                             "lkOpenPlan=false\n"
                             "lkSendUnsure=true\n"
                             "lkShowClipCounts=true\n"
                             "lkSplitRooms=true\n"
                             "lkVerifyLevel=sizeOnly\n"
                             "lkWriteNextTo=true\n");
}

TEST_F(SettingsTest, AfterACardImportInPlaceTheStoredValueIsCopy)
{
    (void)folder.write("card/pool 1.mov");
    fs::create_directory(folder / "Shoots");
    SettingsStore settings = store();
    SortEngine engine(keeping(settings));
    engine.setImportRoot(FileUrl(folder / "Shoots"));
    engine.importCard(FileUrl(folder / "card"), u"CARD"_s);
    EXPECT_EQ(loadSortOptions(store()).fileHandling, FileHandling::copy);
}

TEST_F(SettingsTest, ChoosingNoFolderInThePanelLeavesTheShootsFolderAsItWas)
{
    SettingsStore settings = store();
    SortEngine engine(keeping(settings));
    engine.setImportRoot(FileUrl("/old"));
    engine.chooseImportRoot();
    EXPECT_EQ(engine.importRoot(), FileUrl("/old"));
    ASSERT_THAT(panels, SizeIs(1));
    EXPECT_EQ(panels[0].prompt, u"Use as Shoots Folder"_s);
    EXPECT_EQ(panels[0].message, u"Choose where new SD-card imports should be organized."_s);

    folderToChoose = FileUrl("/new");
    engine.chooseImportRoot();
    EXPECT_EQ(engine.importRootPath(), u"/new"_s);
    EXPECT_EQ(loadImportRoot(store()), FileUrl("/new"));
    engine.setImportRoot(std::nullopt);
    EXPECT_EQ(loadImportRoot(store()), std::nullopt);
}

TEST_F(SettingsTest, PathsOfAnyBytesComeBackTheSame)
{
    for (const char *path : {"/..", "/a&b", "/line\nbreak", "/ends in a blank ", "/bad\xff\xfe%20", "/@Point(1 2)",
                             "/\"quoted\";=#,", "/%41", "/\xF0\x9F\x8F\xA0"}) {
        {
            SettingsStore settings = store();
            saveImportRoot(settings, FileUrl(path));
            storeRecents(settings, {{.name = u"name"_s, .path = FileUrl(path)}});
        }
        EXPECT_EQ(loadImportRoot(store()), FileUrl(path));
        EXPECT_THAT(loadRecents(store()), ElementsAre(Recent{u"name"_s, FileUrl(path)}));
    }
}

TEST_F(SettingsTest, RecentsThatCannotBeReadCountAsNone)
{
    writeSettings("[General]\nlkRecents=[]\n");
    EXPECT_THAT(loadRecents(store()), IsEmpty());
    SettingsStore settings = store();
    for (const char *recents :
         {"not json", "{}", R"([{"name":"a"}])", R"([{"path":"/a"}])", R"([{"name":1,"path":"/a"}])",
          R"([{"name":"a","path":""}])", "[1,2]", R"([{"name":"a","path":"/a"},{"name":"b"}])"}) {
        settings.setData(u"lkRecents"_s, recents);
        EXPECT_THAT(loadRecents(settings), IsEmpty()) << recents;
    }
}

TEST_F(SettingsTest, OfMoreRecentsThanAreKeptTheFirstFiveAreRead)
{
    std::vector<Recent> recents;
    for (const char *name : {"a", "b", "c", "d", "e", "f"}) {
        recents.push_back({.name = QString::fromLatin1(name), .path = FileUrl(std::string("/") + name)});
    }
    SettingsStore settings = store();
    storeRecents(settings, recents);
    recents.pop_back();
    EXPECT_EQ(loadRecents(settings), recents);
}

TEST_F(SettingsTest, TheNeededBinsComeBackAndNoneIsAChoiceToo)
{
    EXPECT_EQ(loadNeededBins(store()), defaultNeededBins());
    EXPECT_FALSE(fs::exists(file)) << "the default isn't written back";
    for (const std::set<QString> &bins : {std::set<QString>{u"Hallway / Stairs"_s, u"Pool"_s}, std::set<QString>{}}) {
        {
            SettingsStore settings = store();
            saveNeededBins(settings, bins);
        }
        EXPECT_EQ(loadNeededBins(store()), bins);
    }
}

TEST_F(SettingsTest, NeededBinsThatCannotBeReadAreTheDefaultAndUnknownNamesAreLeftOut)
{
    for (const char *bins : {"Kitchen", "{}", "@ByteArray([\"Kitchen\")"}) {
        writeSettings(std::string("[General]\nlkNeededBins=") + bins + "\n");
        EXPECT_EQ(loadNeededBins(store()), defaultNeededBins()) << bins;
    }
    writeSettings("[General]\nlkNeededBins=\"@ByteArray([\\\"Pool\\\", \\\"Ballroom\\\", 7])\"\n");
    EXPECT_EQ(loadNeededBins(store()), std::set<QString>{u"Pool"_s});
}

TEST_F(SettingsTest, ASixthRecentPushesOutTheOldestAndAFolderInTheListMovesToTheFront)
{
    SettingsStore settings = store();
    SortEngine engine(keeping(settings));
    for (const char *path : {"/a", "/b", "/c", "/d", "/e", "/f", "/c", "/c/."}) {
        engine.sortFolder(FileUrl(path));
    }
    EXPECT_THAT(engine.recents(), ElementsAre(Recent{u"."_s, FileUrl("/c/.")}, Recent{u"c"_s, FileUrl("/c")},
                                              Recent{u"f"_s, FileUrl("/f")}, Recent{u"e"_s, FileUrl("/e")},
                                              Recent{u"d"_s, FileUrl("/d")}))
        << "two spellings of one folder are two entries";
    EXPECT_EQ(loadRecents(store()), engine.recents());
}

TEST_F(SettingsTest, AReadOnlyFileKeepsItsValuesAndTheProgramItsOwn)
{
    writeSettings("[General]\nlkOpenEditor=false\n");
    fs::permissions(settingsFolder.path(), static_cast<fs::perms>(0555));
    fs::permissions(file, static_cast<fs::perms>(0444));
    {
        const Unprivileged user;
        SettingsStore settings = store();
        SortEngine engine(keeping(settings));
        EXPECT_FALSE(engine.options().openEditorAfterExport);
        engine.setOptions(noDefault);
        drain();
        EXPECT_EQ(engine.options(), noDefault);
    }
    EXPECT_EQ(bytesOf(file), "[General]\nlkOpenEditor=false\n");
    fs::permissions(settingsFolder.path(), fs::perms::owner_all);
}

TEST_F(SettingsTest, AFileThatIsAFolderReadsAsNoSettings)
{
    fs::create_directory(file);
    SettingsStore settings = store();
    SortEngine engine(keeping(settings));
    EXPECT_EQ(engine.options(), SortOptions());
    engine.setOptions(noDefault);
    drain();
    EXPECT_EQ(engine.options(), noDefault);
}

TEST_F(SettingsTest, ADamagedFileReadsAsDefaultsOrWhatIsStillWholeAndNeverCrashes)
{
    {
        SettingsStore settings = store();
        saveSortOptions(settings, noDefault);
        storeRecents(settings, {{.name = u"a"_s, .path = FileUrl("/a")}});
    }
    const std::string whole = bytesOf(file);
    std::mt19937 random(20260504);
    for (int round = 0; round < 300; ++round) {
        std::string damaged = whole;
        for (int flips = 0; flips < 1 + round % 20; ++flips) {
            damaged[random() % damaged.size()] = static_cast<char>(random());
        }
        damaged.resize(round % 3 == 0 ? random() % damaged.size() : damaged.size());
        (void)settingsFolder.write(std::to_string(round) + ".ini", damaged);
        const SettingsStore settings(QString::fromStdString((settingsFolder / std::to_string(round)).native()) +
                                     u".ini"_s);
        const SortOptions options = loadSortOptions(settings);
        EXPECT_THAT(options.fileHandling, testing::AnyOf(noDefault.fileHandling, FileHandling::inPlace)) << round;
        EXPECT_THAT(options.verifyLevel, testing::AnyOf(noDefault.verifyLevel, VerifyLevel::sizeOnly)) << round;
        EXPECT_LE(loadRecents(settings).size(), 1u);
    }
}

TEST_F(SettingsTest, AChangeIsStoredAtOnceAndTheSameValueAgainIsNone)
{
    SettingsStore settings = store();
    SortSettings held(&settings);
    EXPECT_FALSE(held.setTarget(NLE::finalCut));
    EXPECT_FALSE(fs::exists(file));
    EXPECT_TRUE(held.setTarget(NLE::resolve));
    EXPECT_FALSE(held.setTarget(NLE::resolve));
    EXPECT_TRUE(held.setModelTier(ModelTier::cloud));
    EXPECT_TRUE(held.setOptions(noDefault));
    EXPECT_FALSE(held.setOptions(noDefault));
    EXPECT_TRUE(held.setImportRoot(FileUrl("/Shoots")));
    EXPECT_FALSE(held.setImportRoot(FileUrl("/Shoots")));
    held.rememberRecent(FileUrl("/House"));
    const SortSettings next(&settings);
    EXPECT_EQ(next.target(), NLE::resolve);
    EXPECT_EQ(next.modelTier(), ModelTier::cloud);
    EXPECT_EQ(next.options(), noDefault);
    EXPECT_EQ(next.importRoot(), FileUrl("/Shoots"));
    EXPECT_EQ(next.recents(), held.recents());
}

TEST(SortSettings, WithoutAStoreLastAsLongAsTheObject)
{
    SortSettings held(nullptr);
    EXPECT_TRUE(held.setTarget(NLE::resolve));
    held.rememberRecent(FileUrl("/House"));
    EXPECT_EQ(held.target(), NLE::resolve);
    EXPECT_THAT(held.recents(), SizeIs(1));
}

TEST_F(SettingsTest, TheCloudIsAskedAtItsPublicAddressForItsUsualModelUnlessToldOtherwise)
{
    const CloudSettings usual = CloudSettings::load(store(), u"key"_s);
    EXPECT_EQ(usual, (CloudSettings{.endpoint = u"https://api.anthropic.com/v1/messages"_s,
                                    .model = u"claude-sonnet-4-5"_s,
                                    .apiKey = u"key"_s,
                                    .maxFramesPerClip = 3}));
    writeSettings("[General]\ncloudEndpoint=http://localhost:8080/v1/messages\ncloudModel=another\n");
    EXPECT_EQ(CloudSettings::load(store(), u""_s),
              (CloudSettings{.endpoint = u"http://localhost:8080/v1/messages"_s, .model = u"another"_s}));
}

TEST_F(SettingsTest, AnEmptyEndpointOrModelCountsAsMissing)
{
    writeSettings("[General]\ncloudEndpoint=\ncloudModel=\"\"\n");
    EXPECT_EQ(CloudSettings::load(store(), u""_s), CloudSettings());
}

TEST_F(SettingsTest, TheKeyIsNeverReadFromNorWrittenToTheSettings)
{
    writeSettings("[General]\napiKey=from-the-file\ncloudAPIKey=from-the-file\n");
    EXPECT_EQ(CloudSettings::load(store(), u""_s).apiKey, u""_s);
    SettingsStore settings = store();
    SortEngine engine(keeping(settings));
    engine.setCloudSettings(CloudSettings::load(settings, u"sk-secret"_s));
    engine.setModelTier(ModelTier::cloud);
    engine.setOptions(noDefault);
    engine.setImportRoot(shoot);
    EXPECT_EQ(store().string(u"modelTier"_s), u"cloud"_s) << "all was written";
    EXPECT_THAT(bytesOf(file), testing::Not(HasSubstr("sk-secret")));
}
