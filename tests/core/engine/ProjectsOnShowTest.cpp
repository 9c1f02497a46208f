// The screens' view of sorted shoots that are opened, renamed and put back.
#include "tests/core/engine/ProjectsFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

using ProjectsOnShowTest = ProjectsTest;

TEST_F(ProjectsOnShowTest, TheNameOnShowStaysWhenAnotherProjectIsRenamedOrTheNewNameIsBlank)
{
    makeClips({"pool 1"});
    cache.save({.summary = {.id = u"abc"_s, .name = u"Other"_s, .folderPath = FileUrl("/other")}});
    SortEngine engine(seams());
    sortShoot(engine);
    engine.renameProject(id, u"House"_s);
    int announced = 0;
    QObject::connect(&engine, &SortEngine::folderChanged, [&] { ++announced; });
    engine.renameProject(id, u" \t"_s);
    engine.renameProject(u"abc"_s, u"Barn"_s);
    EXPECT_EQ(engine.projectName(), u"House"_s);
    EXPECT_EQ(announced, 0);
}

TEST_F(ProjectsOnShowTest, EachChangeOfTheListIsAnnouncedOnce)
{
    makeClips({"pool 1"});
    SortEngine engine(seams());
    sortShoot(engine);
    std::vector<std::vector<QString>> lists;
    std::vector<QString> names;
    QObject::connect(&engine, &SortEngine::projectsChanged, [&] {
        lists.emplace_back();
        for (const ProjectSummary &project : engine.projects()) {
            lists.back().push_back(project.name);
        }
    });
    QObject::connect(&engine, &SortEngine::folderChanged, [&] { names.push_back(engine.displayName()); });
    engine.renameProject(id, u"House"_s);
    engine.deleteProject(id);
    engine.restoreProject();
    EXPECT_THAT(lists, ElementsAre(ElementsAre(u"House"_s), IsEmpty(), ElementsAre(u"House"_s)));
    EXPECT_THAT(names, ElementsAre(u"House"_s)) << "of the project on show";
}

TEST_F(ProjectsOnShowTest, TheNameOfAProjectIsAnnouncedWhenItsFolderIsSortedAgain)
{
    makeClips({"pool 1"});
    cache.save({.summary = {.id = id, .name = u"The Glass House"_s, .folderPath = shoot}});
    SortEngine engine(seams());
    QString shown;
    QObject::connect(&engine, &SortEngine::folderChanged, [&] { shown = engine.displayName(); });
    engine.sortFolder(shoot);
    EXPECT_EQ(shown, u"The Glass House"_s);
    EXPECT_EQ(engine.currentProjectID(), id);
    ASSERT_TRUE(reaches(engine, StageKind::results));
}

TEST_F(ProjectsOnShowTest, ItsNameIsAnnouncedWhenItIsOpened)
{
    makeClips({"pool 1"});
    SortEngine engine(seams());
    sortShoot(engine);
    engine.renameProject(id, u"House"_s);
    engine.reset();
    std::vector<QString> names;
    QObject::connect(&engine, &SortEngine::folderChanged, [&] { names.push_back(engine.displayName()); });
    engine.openProject(id);
    EXPECT_THAT(names, ElementsAre(u"House"_s));
}

TEST_F(ProjectsOnShowTest, PuttingBackAProjectThatNobodyDeletedAnnouncesNothing)
{
    makeClips({"pool 1"});
    SortEngine engine(seams());
    sortShoot(engine);
    int announced = 0;
    QObject::connect(&engine, &SortEngine::projectsChanged, [&] { ++announced; });
    engine.restoreProject();
    EXPECT_EQ(announced, 0);
    EXPECT_EQ(engine.currentProjectID(), id);
}

TEST_F(ProjectsOnShowTest, AShootWithoutClipsIsNeverSaved)
{
    SortEngine engine(seams());
    engine.confirmAll();
    engine.sortFolder(shoot);
    ASSERT_TRUE(reaches(engine, StageKind::emptyFolder));
    engine.confirmAll();
    EXPECT_THAT(engine.projects(), IsEmpty());
}

TEST_F(ProjectsOnShowTest, ItsClipsAreAnnouncedWhenItIsOpenedAndTheirEndByAReset)
{
    makeClips({"pool 1"});
    {
        SortEngine engine(seams());
        sortShoot(engine);
    }
    SortEngine engine(seams());
    std::vector<int> counts;
    std::vector<bool> exportable;
    QObject::connect(&engine, &SortEngine::clipsChanged, [&] { counts.push_back(engine.clipCount()); });
    QObject::connect(&engine, &SortEngine::canExportChanged, [&] { exportable.push_back(engine.canExport()); });
    engine.openProject(id);
    EXPECT_THAT(counts, ElementsAre(1));
    EXPECT_THAT(exportable, ElementsAre(true));
    engine.reset();
    EXPECT_THAT(counts, ElementsAre(1, 0));
    EXPECT_THAT(exportable, ElementsAre(true, false));
}

TEST_F(ProjectsOnShowTest, EachReopenedClipGetsItsOwnPictureAndEachGroupIsAnnouncedOnce)
{
    makeClips({"a 1", "b 2", "c 3", "d 4", "e 5", "f 6"});
    {
        SortEngine engine(seams());
        sortShoot(engine);
    }
    const auto shadeOf = [](const MediaClip &clip) { return 40 * clip.url.baseName().last(1).toInt(); };
    auto parts = seams();
    parts.sampleFrames = [&](const MediaClip &clip, int, double) {
        QImage frame(8, 8, QImage::Format_RGB888);
        frame.fill(QColor(shadeOf(clip), shadeOf(clip), shadeOf(clip)));
        return Frames{frame};
    };
    SortEngine engine(parts);
    engine.openProject(id);
    int announced = 0;
    QObject::connect(&engine, &SortEngine::clipsChanged, [&] { ++announced; });
    ASSERT_TRUE(waitUntil([&] {
        return std::ranges::none_of(engine.clips(), [](const ClipPtr &clip) { return clip->thumbnail.isNull(); });
    }));
    EXPECT_EQ(announced, 2) << "four clips, then two";
    for (const ClipPtr &clip : engine.clips()) {
        EXPECT_NEAR(qGray(clip->thumbnail.stretchedTo({}).pixel(4, 4)), shadeOf(*clip), 10);
    }
}
