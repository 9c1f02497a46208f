// The list of sorted shoots, without an engine.
#include <gmock/gmock.h>

#include "core/projects/ProjectCache.h"
#include "core/projects/ProjectShelf.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

class ProjectShelfTest : public testing::Test
{
protected:
    static CachedProject projectNamed(const QString &id, const QString &name, int hour)
    {
        return {.summary = {.id = id,
                            .name = name,
                            .folderPath = FileUrl("/" + id.toStdString()),
                            .savedAt = Date(std::chrono::hours(hour))},
                .clips = {}};
    }

    std::vector<QString> names() const
    {
        std::vector<QString> names(shelf.projects().size());
        std::ranges::transform(shelf.projects(), names.begin(), &ProjectSummary::name);
        return names;
    }

    void saveTwo()
    {
        shelf.save(projectNamed(u"a"_s, u"House"_s, 1));
        shelf.save(projectNamed(u"b"_s, u"Barn"_s, 2));
    }

    const TempFolder folder;
    ProjectCache cache{folder.path()};
    ProjectShelf shelf{&cache};
};

TEST_F(ProjectShelfTest, ListsWhatIsSavedAndWhatTheCacheHasFromBefore)
{
    EXPECT_THAT(names(), IsEmpty());
    saveTwo();
    EXPECT_THAT(names(), ElementsAre(u"Barn"_s, u"House"_s));
    EXPECT_EQ(ProjectShelf(&cache).projects(), shelf.projects());
}

TEST_F(ProjectShelfTest, ANameWithoutItsBlanksIsTakenAndBlanksAloneAreNot)
{
    saveTwo();
    EXPECT_TRUE(shelf.rename(u"a"_s, u"  Villa "_s));
    EXPECT_FALSE(shelf.rename(u"b"_s, u" \t"_s));
    EXPECT_THAT(names(), ElementsAre(u"Barn"_s, u"Villa"_s));
}

TEST_F(ProjectShelfTest, AProjectThatCannotBeReadLeavesTheList)
{
    saveTwo();
    cache.flush();
    ASSERT_TRUE(fs::remove(folder / "a.json"));
    EXPECT_EQ(shelf.open(u"a"_s), std::nullopt);
    EXPECT_THAT(names(), ElementsAre(u"Barn"_s));
    EXPECT_EQ(shelf.open(u"b"_s)->summary.name, u"Barn"_s);
}

TEST_F(ProjectShelfTest, TheProjectThatWasRemovedLastIsPutBackOnce)
{
    saveTwo();
    EXPECT_EQ(shelf.restore(), std::nullopt);
    shelf.remove(u"b"_s);
    shelf.remove(u"a"_s);
    EXPECT_EQ(shelf.deletedProject(), u"House"_s);
    EXPECT_EQ(shelf.restore(), u"a"_s);
    EXPECT_THAT(names(), ElementsAre(u"House"_s));
    EXPECT_EQ(shelf.deletedProject(), QString());
    EXPECT_EQ(shelf.restore(), std::nullopt);
}

TEST_F(ProjectShelfTest, ARemovedProjectThatWasSavedAgainStaysAsItWasSaved)
{
    saveTwo();
    shelf.remove(u"a"_s);
    shelf.save(projectNamed(u"a"_s, u"Sorted again"_s, 3));
    EXPECT_EQ(shelf.deletedProject(), QString());
    EXPECT_EQ(shelf.restore(), std::nullopt);
    EXPECT_THAT(names(), ElementsAre(u"Sorted again"_s, u"Barn"_s));
}

TEST_F(ProjectShelfTest, ARemovedProjectThatCouldNotBeReadAnyMoreIsNotPutBackNorIsTheOneBefore)
{
    saveTwo();
    cache.flush();
    shelf.remove(u"b"_s);
    ASSERT_TRUE(fs::remove(folder / "a.json"));
    shelf.remove(u"a"_s);
    EXPECT_EQ(shelf.deletedProject(), QString());
    EXPECT_EQ(shelf.restore(), std::nullopt);
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(ProjectShelfTest, AProjectHasANameOfItsOwnOnceItIsntItsFolders)
{
    const FileUrl house("/shoots/House");
    EXPECT_EQ(shelf.ownName(house), QString());
    CachedProject project = projectNamed(projectID(house), u"House"_s, 1);
    project.summary.folderPath = house;
    shelf.save(std::move(project));
    EXPECT_EQ(shelf.ownName(house), QString());
    ASSERT_TRUE(shelf.rename(projectID(house), u"The Glass House"_s));
    EXPECT_EQ(shelf.ownName(house), u"The Glass House"_s);
}

TEST(ProjectShelf, WithoutACacheKeepsNothing)
{
    ProjectShelf shelf(nullptr);
    EXPECT_TRUE(shelf.keepsNothing());
    shelf.save({.summary = {.id = u"a"_s, .name = u"House"_s}});
    EXPECT_THAT(shelf.projects(), IsEmpty());
    EXPECT_EQ(shelf.open(u"a"_s), std::nullopt);
    EXPECT_FALSE(shelf.rename(u"a"_s, u"Barn"_s));
    shelf.remove(u"a"_s);
    EXPECT_EQ(shelf.restore(), std::nullopt);
}
