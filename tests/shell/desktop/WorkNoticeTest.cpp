#include "shell/desktop/WorkNotice.h"

#include "tests/core/engine/SortEngineFixture.h"
#include "tests/support/MockService.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

// A sort that takes as long as any, behind another window or not.
class WorkNoticeTest : public SortEngineTest
{
protected:
    WorkNoticeTest()
    {
        desktop.addMethod(u"Notify"_s, u"susssasa{sv}i"_s, u"u"_s, u"ret = 7"_s);
        fs::create_directory(house.path());
        (void)folder.write("Hill & Co/kitchen 1.mov");
        (void)folder.write("Hill & Co/dark 2.mov");
    }

    QStringList told() const { return desktop.calls(); }

    const FileUrl house{folder / "Hill & Co"};
    MockService desktop{u"org.freedesktop.Notifications"_s, u"/org/freedesktop/Notifications"_s,
                        u"org.freedesktop.Notifications"_s};
    SortEngine engine{seams()};
    bool isInFront = false;
};

} // namespace

TEST_F(WorkNoticeTest, ALongSortThatEndsBehindAnotherWindowIsTold)
{
    const WorkNotice notice(
        engine, [this] { return isInFront; }, std::chrono::milliseconds(0));
    engine.sortFolder(house);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    ASSERT_TRUE(waitUntil([this] { return !told().isEmpty(); }));
    EXPECT_THAT(told().first().toStdString(),
                testing::StartsWith("Notify Larkspan 0 larkspan Hill & Co is sorted 2 clips · 2 bins · 1 to review"));
}

TEST_F(WorkNoticeTest, WhatOfACardCouldNotBeReadIsToldWithTheOutcome)
{
    const auto closed = folder.write("card/DCIM/pool 2.mov").parent_path();
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(closed, fs::perms::none);
    const WorkNotice notice(
        engine, [this] { return isInFront; }, std::chrono::milliseconds(0));
    engine.setImportRoot(FileUrl(folder.path()));
    {
        const Unprivileged user;
        engine.importCard(FileUrl(folder / "card"), u"CARD"_s);
        ASSERT_TRUE(reaches(engine, StageKind::emptyFolder));
    }
    fs::permissions(closed, fs::perms::all);
    ASSERT_TRUE(waitUntil([this] { return told().size() == 1; }));
    EXPECT_THAT(told().first().toStdString(), testing::HasSubstr("No video files found in card Clips may be missing"));
    engine.sortFolder(house);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    ASSERT_TRUE(waitUntil([this] { return told().size() == 2; }));
    EXPECT_THAT(told().last().toStdString(), testing::HasSubstr("1 to review\nClips may be missing"));
}

TEST_F(WorkNoticeTest, TheNextNoticeTakesTheLastOnesPlaceAndAPressOnItIsHeard)
{
    WorkNotice notice(
        engine, [this] { return isInFront; }, std::chrono::milliseconds(0));
    int pressed = 0;
    QObject::connect(&notice, &WorkNotice::pressed, [&pressed] { ++pressed; });
    engine.sortFolder(house);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    ASSERT_TRUE(waitUntil([this] { return told().size() == 1; }));
    drain(); // the answer with its id
    SortOptions options;
    options.openEditorAfterExport = false;
    engine.setOptions(options);
    engine.sortFolder(FileUrl(folder / "nothing here"));
    ASSERT_TRUE(reaches(engine, StageKind::emptyFolder));
    ASSERT_TRUE(waitUntil([this] { return told().size() == 2; }));
    EXPECT_THAT(told().last().toStdString(),
                testing::StartsWith("Notify Larkspan 7 larkspan No video files found in nothing here"));
    desktop.emitSignal(u"ActionInvoked"_s, u"us"_s, {6U, u"default"_s});
    desktop.emitSignal(u"ActionInvoked"_s, u"us"_s, {7U, u"default"_s});
    EXPECT_TRUE(waitUntil([&] { return pressed == 1; }));
}

TEST_F(WorkNoticeTest, NothingIsToldOfWorkThatIsSeenOrShortOrDropped)
{
    const WorkNotice whenLong(
        engine, [] { return false; }, std::chrono::hours(1));
    const WorkNotice whenInFront(
        engine, [] { return true; }, std::chrono::milliseconds(0));
    engine.sortFolder(house);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    const WorkNotice whenDropped(
        engine, [] { return false; }, std::chrono::milliseconds(0));
    engine.sortFolder(house);
    engine.reset();
    drain();
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(WorkNoticeTest, AFailureIsToldInItsOwnWords)
{
    auto parts = seams();
    parts.organizeByBin = [](const auto &...) -> OrganizeAnswer {
        return tl::make_unexpected(CopyFailure{u"2 files didn't copy cleanly"_s});
    };
    SortEngine failing(parts);
    const WorkNotice notice(
        failing, [] { return false; }, std::chrono::milliseconds(0));
    SortOptions options;
    options.fileHandling = FileHandling::copy;
    failing.setOptions(options);
    failing.sortFolder(house);
    ASSERT_TRUE(reaches(failing, StageKind::results));
    failing.exportEvent();
    ASSERT_TRUE(reaches(failing, StageKind::failed));
    ASSERT_TRUE(waitUntil([this] { return told().size() == 2; }));
    EXPECT_THAT(told().last().toStdString(),
                testing::HasSubstr("Couldn't write the event 2 files didn't copy cleanly"));
}
