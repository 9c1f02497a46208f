// The file that an engine makes of the report on a shoot's copies.
#include "core/files/AtomicFile.h"
#include "tests/core/engine/CopyHistoryFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

namespace {

class CopyReportFileTest : public CopyHistoryTest
{
protected:
    [[nodiscard]] std::string firstPage() const { return contentOf(opened.front().path(), 1000).toStdString(); }
    // Waits until the report has been opened so many times.
    [[nodiscard]] bool isReported(std::size_t times) const
    {
        return waitUntil([&] { return opened.size() == times; });
    }
};

} // namespace

TEST_F(CopyReportFileTest, AShootWithoutCopiesHasNoReport)
{
    makeClips({"kitchen 1"});
    std::atomic<int> reports = 0;
    auto parts = copyingSeams();
    parts.copyReport = [&reports](const auto &...) {
        ++reports;
        return QString();
    };
    {
        SortEngine engine(parts);
        engine.sortFolder(shoot);
        ASSERT_TRUE(reaches(engine, StageKind::results));
        engine.showCopyReport();
        EXPECT_EQ(engine.copyHistory()->problem(), u""_s);
    }
    EXPECT_EQ(reports, 0);
    EXPECT_THAT(opened, IsEmpty());
}

TEST_F(CopyReportFileTest, TheReportIsWrittenBesideTheCopiesAndOpened)
{
    SortEngine engine(copyingSeams());
    engine.showCopyReport();
    EXPECT_THAT(opened, IsEmpty());
    import(engine);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.showCopyReport();
    ASSERT_TRUE(isReported(1));
    const std::string name = dated().filename().string();
    EXPECT_THAT(opened, ElementsAre(FileUrl(dated() / (name + " copy report.html"))));
    EXPECT_EQ(firstPage(), name + ": 1 copies");
    EXPECT_EQ(engine.copyHistory()->problem(), u""_s);
}

TEST_F(CopyReportFileTest, WhereTheCopiesCannotBeReachedTheReportGoesIntoDocumentsAndElseTheReasonIsSaid)
{
    SortEngine engine(copyingSeams());
    import(engine);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    fs::rename(dated(), folder / "unplugged");
    engine.showCopyReport();
    ASSERT_TRUE(isReported(1));
    EXPECT_EQ(opened.front().path().parent_path().parent_path(), folder / "home");
    EXPECT_TRUE(fs::exists(opened.front().path()));

    fs::remove_all(folder / "home");
    (void)folder.write("home");
    engine.showCopyReport();
    ASSERT_TRUE(waitUntil([&engine] { return !engine.copyHistory()->problem().isEmpty(); }));
    EXPECT_THAT(opened, SizeIs(1));
    engine.copyHistory()->dismissProblem();
    EXPECT_EQ(engine.copyHistory()->problem(), u""_s);
}

TEST_F(CopyReportFileTest, AThreadWritesTheReportOnceHoweverOftenItIsAskedForAndAnotherSortDoesNotStopIt)
{
    Gate writing;
    std::atomic<int> reports = 0;
    auto parts = copyingSeams();
    parts.copyReport = [&](const auto &, const QString &name) {
        ++reports;
        if (QThread::currentThread() != QCoreApplication::instance()->thread()) {
            writing.pass();
        }
        return name;
    };
    SortEngine engine(parts);
    import(engine);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.showCopyReport();
    writing.awaitArrival();
    engine.showCopyReport();
    engine.sortFolder(FileUrl(folder / "card"));
    EXPECT_FALSE(engine.copyHistory()->hasReport()) << "of the shoot that is on show now";
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_THAT(opened, IsEmpty());
    writing.open(100);
    ASSERT_TRUE(isReported(1));
    const std::string name = dated().filename().string();
    EXPECT_EQ(opened.front(), FileUrl(dated() / (name + " copy report.html")));
    EXPECT_EQ(firstPage(), name);
    EXPECT_EQ(reports, 1);

    engine.openProject(projectID(FileUrl(dated())));
    ASSERT_TRUE(waitUntil([&engine] { return engine.copyHistory()->hasReport(); }));
    engine.showCopyReport();
    EXPECT_TRUE(isReported(2)) << "once more when the first is written";
}
