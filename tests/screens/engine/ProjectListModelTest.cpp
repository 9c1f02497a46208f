#include "screens/engine/ProjectListModel.h"

#include <QtTest/QAbstractItemModelTester>

#include "tests/screens/ModelFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;

namespace {

using ProjectListModelTest = ModelTest;

} // namespace

TEST_F(ProjectListModelTest, ListsTheShootsTheLatestFirstAndWithNothingToReviewInTwoParts)
{
    ProjectListModel projects;
    const QAbstractItemModelTester tester(&projects, QAbstractItemModelTester::FailureReportingMode::Warning);
    projects.setEngine(&engine);
    EXPECT_EQ(projects.rowCount(), 0);
    makeClips({"kitchen 1", "dark 2"});
    (void)folder.write("second/pool 1.mov");
    engine.sortFolder(FileUrl(folder / "second"));
    ASSERT_TRUE(reaches(engine, StageKind::results));
    sortShoot();
    EXPECT_THAT(column(projects, ProjectListModel::NameRole), ElementsAre(shoot.lastPathComponent(), u"second"_s));
    EXPECT_THAT(column(projects, ProjectListModel::DetailRole),
                ElementsAre(u"3 clips · 3 bins · 1 to review"_s, u"1 clips · 1 bins"_s));
    const auto marked = [&](int row) { return projects.index(row).data(ProjectListModel::CurrentRole).toBool(); };
    EXPECT_TRUE(marked(0));
    EXPECT_FALSE(marked(1));
    engine.deleteProject(projectID(shoot));
    EXPECT_THAT(column(projects, ProjectListModel::NameRole), ElementsAre(u"second"_s));
}
