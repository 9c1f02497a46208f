// The switcher's offer to put back a removed project, without a window.
#include "shell/header/RemovedProject.h"

#include "tests/core/engine/SortEngineFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class RemovedProjectTest : public SortEngineTest
{
protected:
    RemovedProjectTest() : engine(seams())
    {
        removed.setEngine(&engine);
        QObject::connect(&removed, &RemovedProject::rowDue, [this](int row) { rows.push_back(row); });
    }

    // Leaves a project for each name, the last one first in the list.
    void sort(std::initializer_list<const char *> names)
    {
        for (const char *name : names) {
            (void)folder.write(std::filesystem::path(name) / "pool 1.mov");
            engine.sortFolder(FileUrl(folder / name));
            ASSERT_TRUE(reaches(engine, StageKind::working));
            ASSERT_TRUE(reaches(engine, StageKind::results));
        }
    }

    [[nodiscard]] std::vector<QString> projects() const
    {
        std::vector<QString> names;
        std::ranges::transform(engine.projects(), std::back_inserter(names), &ProjectSummary::name);
        return names;
    }

    void remove(int row) { removed.remove(engine.projects().at(static_cast<std::size_t>(row)).id, row); }

    SortEngine engine;
    RemovedProject removed;
    std::vector<int> rows; // that were to get focus
};

} // namespace

TEST_F(RemovedProjectTest, ARemovedProjectIsOfferedAndTheNextRowGetsFocus)
{
    sort({"first", "second", "third"});
    EXPECT_FALSE(removed.isOffered());
    remove(1);
    EXPECT_TRUE(removed.isOffered());
    EXPECT_EQ(removed.note(), u"Removed second"_s);
    EXPECT_THAT(projects(), ElementsAre(u"third"_s, u"first"_s));
    EXPECT_THAT(rows, ElementsAre(1));
}

TEST_F(RemovedProjectTest, AfterTheLastRowTheOneAboveGetsFocusAndAfterTheOnlyOneNone)
{
    sort({"first", "second"});
    remove(1);
    remove(0);
    EXPECT_THAT(rows, ElementsAre(0, -1));
}

TEST_F(RemovedProjectTest, TheProjectIsPutBackAtItsPlaceAndGetsFocus)
{
    sort({"first", "second", "third"});
    const auto before = projects();
    remove(2);
    rows.clear();
    removed.restore();
    EXPECT_EQ(projects(), before);
    EXPECT_THAT(rows, ElementsAre(2));
    EXPECT_FALSE(removed.isOffered());
    removed.restore(); // nothing is left to
    EXPECT_THAT(rows, ElementsAre(2));
}

TEST_F(RemovedProjectTest, OnlyTheLastOneIsOffered)
{
    sort({"first", "second", "third"});
    remove(0);
    remove(0);
    EXPECT_EQ(removed.note(), u"Removed second"_s);
    removed.restore();
    EXPECT_THAT(projects(), ElementsAre(u"second"_s, u"first"_s));
    EXPECT_FALSE(removed.isOffered());
}

TEST_F(RemovedProjectTest, TheOfferEndsWithTheSwitcher)
{
    sort({"first", "second"});
    remove(0);
    rows.clear();
    removed.forget();
    EXPECT_FALSE(removed.isOffered());
    removed.restore();
    EXPECT_THAT(projects(), ElementsAre(u"first"_s));
    EXPECT_THAT(rows, IsEmpty());
}

TEST_F(RemovedProjectTest, AProjectWhoseFolderIsSortedAgainIsNoLongerOffered)
{
    sort({"first", "second"});
    remove(0);
    int changes = 0;
    QObject::connect(&removed, &RemovedProject::changed, [&changes] { ++changes; });
    sort({"second"});
    EXPECT_FALSE(removed.isOffered());
    EXPECT_GT(changes, 0);
}
