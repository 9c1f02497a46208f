// The list of sorted shoots, in which they are renamed, deleted and put back.
#include "tests/core/engine/ProjectsFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using ProjectNamesTest = ProjectsTest;

TEST_F(ProjectNamesTest, ARenameIsTrimmedAndNamesTheOpenProjectToo)
{
    makeClips({"pool 1"});
    SortEngine engine(seams());
    sortShoot(engine);
    const Date savedAt = engine.projects().front().savedAt;
    engine.renameProject(id, u" \n The Glass House\t"_s);
    EXPECT_EQ(engine.displayName(), u"The Glass House"_s);
    EXPECT_EQ(engine.projects().front().name, u"The Glass House"_s);
    EXPECT_EQ(engine.projects().front().savedAt, savedAt);
    engine.confirmAll();
    EXPECT_EQ(saved()->summary.name, u"The Glass House"_s) << "and the next save keeps it";
}

TEST_F(ProjectNamesTest, AProjectIsOpenedUnderTheNameThatTheEditorGaveIt)
{
    makeClips({"pool 1"});
    SortEngine engine(seams());
    sortShoot(engine);
    engine.renameProject(id, u"The Glass House"_s);
    SortEngine later(seams());
    later.openProject(id);
    EXPECT_EQ(later.displayName(), u"The Glass House"_s);
}

TEST_F(ProjectNamesTest, ARenameToBlanksDoesNothing)
{
    makeClips({"pool 1"});
    SortEngine engine(seams());
    sortShoot(engine);
    const auto before = engine.projects();
    engine.renameProject(id, u" \n\t "_s);
    EXPECT_EQ(engine.projects(), before);
    EXPECT_EQ(engine.projectName(), QString());
}

TEST_F(ProjectNamesTest, DeletingTheOpenProjectLeavesTheResultsAndTheNextSaveAddsItBack)
{
    makeClips({"pool 1"});
    SortEngine engine(seams());
    sortShoot(engine);
    engine.deleteProject(id);
    EXPECT_EQ(engine.stage().kind, StageKind::results);
    EXPECT_THAT(engine.clips(), SizeIs(1));
    EXPECT_EQ(engine.currentProjectID(), std::nullopt);
    EXPECT_THAT(engine.projects(), IsEmpty());
    EXPECT_EQ(saved(), std::nullopt);
    engine.reassign(engine.clips().front()->id, u"Garage"_s);
    EXPECT_EQ(engine.currentProjectID(), id);
    EXPECT_THAT(engine.projects(), SizeIs(1));
    EXPECT_TRUE(saved());
}

TEST_F(ProjectNamesTest, ADeletedProjectIsPutBackWhereItWas)
{
    for (const char *name : {"first", "second", "third"}) {
        (void)folder.write(std::filesystem::path(name) / "pool 1.mov");
    }
    SortEngine engine(seams());
    for (const char *name : {"first", "second", "third"}) {
        engine.sortFolder(FileUrl(folder / name));
        ASSERT_TRUE(reaches(engine, StageKind::working));
        ASSERT_TRUE(reaches(engine, StageKind::results));
    }
    const auto before = engine.projects();
    EXPECT_EQ(engine.deletedProject(), QString());
    engine.deleteProject(before[0].id); // the one on show
    engine.deleteProject(before[1].id);
    EXPECT_EQ(engine.deletedProject(), u"second"_s);
    engine.restoreProject();
    EXPECT_THAT(engine.projects(), ElementsAre(before[1], before[2]));
    EXPECT_EQ(engine.deletedProject(), QString());
    EXPECT_EQ(engine.currentProjectID(), std::nullopt);
    engine.restoreProject(); // nothing is left to
    EXPECT_THAT(engine.projects(), SizeIs(2));
    engine.openProject(before[1].id);
    EXPECT_THAT(engine.clips(), SizeIs(1));
}

TEST_F(ProjectNamesTest, TheProjectOnShowIsAgainTheOneOnShowWhenItIsPutBack)
{
    makeClips({"pool 1"});
    SortEngine engine(seams());
    sortShoot(engine);
    const auto before = engine.projects();
    engine.deleteProject(id);
    engine.restoreProject();
    EXPECT_EQ(engine.projects(), before);
    EXPECT_EQ(engine.currentProjectID(), id);
    EXPECT_TRUE(saved());
}

TEST_F(ProjectNamesTest, ADeletedProjectWhoseFolderIsSortedAgainStaysAsItWasSorted)
{
    makeClips({"pool 1"});
    SortEngine engine(seams());
    sortShoot(engine);
    engine.deleteProject(id);
    engine.reassign(engine.clips().front()->id, u"Garage"_s); // saves it anew
    EXPECT_EQ(engine.deletedProject(), QString());
    engine.restoreProject();
    EXPECT_EQ(saved()->clips.front().primaryBin, u"Garage"_s);
}

TEST_F(ProjectNamesTest, SortingAFolderTwiceGivesOneProjectAtTheTop)
{
    makeClips({"pool 1"});
    cache.save({.summary = {.id = u"abc"_s, .name = u"Other"_s, .folderPath = FileUrl("/other")}});
    SortEngine engine(seams());
    sortShoot(engine);
    const Date first = engine.projects().front().savedAt;
    sortShoot(engine);
    ASSERT_THAT(engine.projects(), SizeIs(2));
    EXPECT_EQ(engine.projects().front().id, id);
    EXPECT_GT(engine.projects().front().savedAt, first);
}
