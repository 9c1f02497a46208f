// A card is put in while the program runs. Its image lies in a loop device, which a device tree of the test's own tells
// to be a card in a reader. Without the right to mount the tests are skipped, and say why.
#include <QtCore/QDate>

#include "tests/end_to_end/ProgramWindow.h"
#include "tests/output/DeviceTree.h"
#include "tests/output/Mount.h"
#include "tests/support/FfmpegMedia.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::SizeIs;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

namespace {

constexpr std::size_t cardSize = 32UL * 1024 * 1024;

std::vector<std::string> namesIn(const fs::path &folder)
{
    std::vector<std::string> names;
    for (const auto &entry : fs::directory_iterator(folder)) {
        names.push_back(entry.path().filename());
    }
    return names;
}

class CardTest : public ProgramWindow
{
protected:
    void SetUp() override
    {
        if (!card.whyNot().empty()) {
            GTEST_SKIP() << card.whyNot();
        }
        fs::create_directory(shoots);
        for (const char *clip : {"C0001.MP4", "C0002.MP4", "DJI_0001.MP4"}) {
            const fs::path file = card.path() / "DCIM/100MEDIA" / clip;
            fs::create_directories(file.parent_path());
            makeMedia(file, "-f lavfi -i testsrc2=s=320x180:r=25:d=2 -c:v libx264 -preset ultrafast -pix_fmt yuv420p");
        }
        tree.addCardReader(card.deviceNumber());
        ASSERT_TRUE(card.unmount());
    }

    VolumeWatcher::System volumes() const { return {.deviceTree = tree.path(), .byLabel = tree.byLabel()}; }

    void startAndInsertCard()
    {
        start(volumes());
        engine().setImportRoot(FileUrl(shoots));
        card.mountAgain();
        ASSERT_EQ(card.whyNot(), "");
    }

    const TempFolder folder;
    const fs::path shoots = folder / "Shoots";
    const QString offered = u"mount · 3 clips found. Import and sort it into your Shoots folder?"_s;
    const DeviceTree tree;
    Mount card{Mount::Kind::exfat, cardSize, folder / "mount"};
};

} // namespace

TEST_F(CardTest, OneClickBringsACardInAndSortsIt)
{
    startAndInsertCard();
    (void)shown(u"SD card detected"_s);
    (void)shown(offered);
    Desktop::click(shown(u"Import & Sort"_s));
    ASSERT_TRUE(reaches(StageKind::results));
    EXPECT_TRUE(goes(offered));
    const fs::path dated = shoots / ("mount — " + QDate::currentDate().toString(Qt::ISODate).toStdString());
    EXPECT_EQ(engine().folder(), FileUrl(dated));
    EXPECT_THAT(namesIn(dated), UnorderedElementsAre("C0001.MP4", "C0002.MP4", "DJI_0001.MP4"));
    EXPECT_THAT(engine().clips(), SizeIs(3));
    EXPECT_THAT(engine().clipsInBin(u"Aerial / Drone"_s), SizeIs(1));
    EXPECT_EQ(program->state().toolID(), u"binnacle"_s);
    (void)shown(u"Aerial / Drone"_s);
    EXPECT_TRUE(card.unmount());
}

TEST_F(CardTest, ReturnBringsACardIn)
{
    startAndInsertCard();
    (void)shown(offered);
    ASSERT_TRUE(hasKeyboard(u"Import && Sort"_s)); // looked at for long enough
    Desktop::key(u"Return"_s);
    ASSERT_TRUE(reaches(StageKind::results));
    EXPECT_THAT(engine().clips(), SizeIs(3));
}

TEST_F(CardTest, EscapeDeclinesAndNothingIsCopied)
{
    startAndInsertCard();
    (void)shown(offered);
    Desktop::key(u"Escape"_s);
    EXPECT_TRUE(goes(offered));
    EXPECT_EQ(program->volumeWatcher().pendingCandidate(), std::nullopt);
    EXPECT_EQ(engine().stage().kind, StageKind::empty);
    EXPECT_TRUE(fs::is_empty(shoots));
    EXPECT_TRUE(card.unmount());
}

TEST_F(CardTest, NotNowDeclines)
{
    startAndInsertCard();
    (void)shown(offered);
    Desktop::click(shown(u"Not Now"_s));
    EXPECT_TRUE(goes(offered));
    EXPECT_EQ(engine().stage().kind, StageKind::empty);
}

TEST_F(CardTest, WithoutAShootsFolderThePreferencesComeUpAndTheOfferWaits)
{
    start(volumes());
    engine().setImportRoot(std::nullopt);
    card.mountAgain();
    (void)shown(u"Set a Shoots folder first"_s);
    Desktop::click(shown(u"Open Preferences"_s));
    EXPECT_TRUE(waitUntil([&] { return program->state().property("showPreferences").toBool(); }));
    engine().setImportRoot(FileUrl(shoots));
    Desktop::key(u"Escape"_s); // leaves the preferences, and only them
    EXPECT_TRUE(waitUntil([&] { return !program->state().property("showPreferences").toBool(); }));
    const QObject *preferences = program->window()->findChild<QObject *>(u"preferencesOverlay"_s);
    EXPECT_TRUE(waitUntil([&] { return !preferences->property("visible").toBool(); })); // faded, and out of the way
    (void)shown(offered);
    Desktop::click(shown(u"Import & Sort"_s));
    ASSERT_TRUE(reaches(StageKind::results));
}

TEST_F(CardTest, ACardThatIsMountedDuringTheIntroIsNotSeen)
{
    program.emplace(std::nullopt, volumes());
    ASSERT_EQ(program->state().phase(), AppState::Phase::Intro);
    card.mountAgain();
    program->state().finishIntro();
    Mount next(Mount::Kind::ext4, cardSize);
    ASSERT_EQ(next.whyNot(), "");
    fs::create_directory(next.path() / "DCIM");
    tree.addCardReader(next.deviceNumber());
    ASSERT_TRUE(next.unmount());
    next.mountAgain();
    ASSERT_TRUE(waitUntil([&] { return program->volumeWatcher().pendingCandidate().has_value(); }));
    EXPECT_EQ(program->volumeWatcher().pendingCandidate()->url, FileUrl(next.path()));
}

TEST_F(CardTest, ACardThatIsPulledTakesItsPromptWithIt)
{
    startAndInsertCard();
    (void)shown(offered);
    ASSERT_TRUE(card.unmount());
    EXPECT_TRUE(goes(offered));
}
