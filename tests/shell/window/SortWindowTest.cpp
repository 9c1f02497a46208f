// The sort tool in the window: what is dropped on it, and what it says when there is nothing to sort.
#include "screens/stages/ScanTickScheduler.h"
#include "tests/shell/ShellWindow.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

class SortWindowTest : public ShellWindowTest
{
protected:
    [[nodiscard]] bool drop(const QStringList &what)
    {
        return Desktop::drop(what, shown(u"Drop a shoot folder here"_s));
    }
    static QString text(const fs::path &path) { return QString::fromStdString(path.string()); }
};

} // namespace

TEST_F(SortWindowTest, OfThreeFoldersDroppedTogetherOnlyTheFirstIsSorted)
{
    QStringList paths;
    for (const char *name : {"b", "a", "c"}) {
        (void)folder.write(fs::path(name) / "pool 1.mov");
        paths.push_back(text(folder / name));
    }
    open();
    EXPECT_TRUE(drop(paths));
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_EQ(engine.folder(), FileUrl(folder / "b"));
    EXPECT_EQ(engine.recents().size(), 1U);
    (void)shown(u"b · 1 clips · 1 bins"_s);
}

TEST_F(SortWindowTest, ATextThatIsDroppedIsRefused)
{
    open();
    EXPECT_FALSE(drop({u"--text"_s, text(folder.path())}));
    EXPECT_EQ(engine.stage().kind, StageKind::empty);
    EXPECT_TRUE(isShown(u"Drop a shoot folder here"_s));
}

TEST_F(SortWindowTest, AnEmptyCardIsNamedAndAnotherFolderIsSortedInPlaceAndNotImported)
{
    const fs::path card = desk / "EOS_DIGITAL";
    fs::create_directory(card);
    open();
    engine.setImportRoot(FileUrl(desk.path()));
    engine.importCard(FileUrl(card), u"EOS_DIGITAL"_s);
    (void)shown(u"No video files found in EOS_DIGITAL"_s);
    makeClips({"kitchen 1", "pool 2"});
    folderToChoose = shoot;
    Desktop::click(shown(u"Choose Another Folder"_s));
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_EQ(panels.back().prompt, u"Sort This Folder"_s);
    EXPECT_EQ(engine.folder(), shoot);
    EXPECT_EQ(engine.clips().front()->url, FileUrl(folder / "kitchen 1.mov"));
    EXPECT_EQ(imported, 0);
}

TEST_F(SortWindowTest, AShootsFolderThatIsGoneBeforeAnySortLeadsBackToEmptyResults)
{
    open();
    engine.setImportRoot(FileUrl(desk / "gone"));
    engine.importCard(shoot, u"CARD"_s);
    (void)shown(u"Couldn't write the event"_s);
    Desktop::click(shown(u"Back to the Clips"_s));
    EXPECT_TRUE(reaches(engine, StageKind::results));
    (void)shown(u" · 0 clips · 0 bins"_s);
    EXPECT_THAT(engine.clips(), IsEmpty());
    EXPECT_FALSE(shown(u"Export"_s).isEnabled());
    EXPECT_FALSE(shown(u"Sort Again"_s).isEnabled());
}

TEST_F(SortWindowTest, ASortGoesOnInTheLauncherWithoutItsTickAndShowsItsStageWhenTheToolIsBack)
{
    makeClips({"kitchen 1", "pool 2"});
    open();
    holdsClips = true;
    engine.sortFolder(shoot);
    (void)shown(u"Cancel"_s);
    const auto *ticks = window->findChild<ScanTickScheduler *>();
    EXPECT_TRUE(ticks->isRunning());
    Desktop::click(shown(u"Back to Larkspan"_s));
    EXPECT_TRUE(waitUntil([&] { return app.view() == AppState::ViewMode::Landing && !ticks->isRunning(); }));
    EXPECT_EQ(engine.stage().kind, StageKind::working);
    Desktop::click(shown(u"Open Binnacle"_s));
    (void)shown(u"Cancel"_s);
    EXPECT_TRUE(ticks->isRunning());
    landing.open(2);
    EXPECT_TRUE(reaches(engine, StageKind::results));
}

TEST_F(SortWindowTest, CancelDuringASortThrowsTheTilesAwayAndReturnsToTheLanding)
{
    for (int i = 0; i < 12; ++i) {
        (void)folder.write("kitchen " + std::to_string(i) + ".mov");
    }
    open();
    holdsClips = true;
    engine.sortFolder(shoot);
    landing.open(engine.width());
    EXPECT_TRUE(waitUntil([this] { return engine.clipCount() == engine.width(); }));
    Desktop::click(shown(u"Cancel"_s));
    (void)shown(u"Drop a shoot folder here"_s);
    EXPECT_THAT(engine.clips(), IsEmpty());
    EXPECT_EQ(engine.stage().kind, StageKind::empty);
    landing.open(12);
}
