#include "shell/panels/ClipCount.h"

#include <gmock/gmock.h>

#include "tests/support/TempFolder.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

class ClipCountTest : public testing::Test
{
protected:
    QString countOf(const FileUrl &shoot)
    {
        count.begin(shoot);
        EXPECT_EQ(count.text(), u"counting clips…"_s);
        EXPECT_TRUE(waitUntil([this] { return count.isKnown(); }));
        return count.text();
    }

    const TempFolder folder;
    QThreadPool pool;
    QObject owner;
    int counted = 0;
    ClipCount count{owner, pool, [this] { ++counted; }};
};

} // namespace

TEST_F(ClipCountTest, SaysHowManyClipsAFolderHas)
{
    EXPECT_EQ(countOf(FileUrl(folder.path())), u"no clips"_s);
    (void)folder.write("a.mov");
    EXPECT_EQ(countOf(FileUrl(folder.path())), u"1 clip"_s);
    (void)folder.write("b.mov");
    (void)folder.write("notes.txt");
    EXPECT_EQ(countOf(FileUrl(folder.path())), u"2 clips"_s);
    EXPECT_EQ(counted, 3);
}

TEST_F(ClipCountTest, OnlyTheLatestCountIsTold)
{
    (void)folder.write("one/a.mov");
    std::filesystem::create_directory(folder / "none");
    count.begin(FileUrl(folder / "one"));
    EXPECT_EQ(countOf(FileUrl(folder / "none")), u"no clips"_s);
    pool.waitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(counted, 1);
    EXPECT_EQ(count.text(), u"no clips"_s);
}

TEST_F(ClipCountTest, AForgottenCountStaysUnknown)
{
    count.begin(FileUrl(folder.path()));
    count.forget();
    pool.waitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(counted, 0);
    EXPECT_FALSE(count.isKnown());
}
