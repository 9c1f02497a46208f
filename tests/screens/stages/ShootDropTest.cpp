#include "screens/stages/ShootDrop.h"

#include "tests/core/engine/SortEngineFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::Optional;

namespace {

using ShootDropTest = SortEngineTest;

} // namespace

TEST(ShootFolder, IsAFolderItself)
{
    const TempFolder folder;
    EXPECT_THAT(shootFolder(QUrl::fromLocalFile(QString::fromStdString(folder.path()))),
                Optional(FileUrl(folder.path())));
    EXPECT_THAT(shootFolder(QUrl::fromLocalFile(QString::fromStdString(folder.path()) + u'/')),
                Optional(FileUrl(folder.path())));
}

TEST(ShootFolder, OfAFileOrOfNothingIsTheFolderItLiesIn)
{
    const TempFolder folder;
    const auto clip = folder.write("clip.mov");
    EXPECT_THAT(shootFolder(QUrl::fromLocalFile(QString::fromStdString(clip))), Optional(FileUrl(folder.path())));
    EXPECT_THAT(shootFolder(QUrl::fromLocalFile(QString::fromStdString(folder / "gone"))),
                Optional(FileUrl(folder.path())));
}

TEST(ShootFolder, KeepsEveryByteOfAName)
{
    const TempFolder folder;
    const auto odd = folder.path() / "100% \xC3\xA9\xF0\x9F\x8F\xA0 #1 ?\n \xFF";
    std::filesystem::create_directory(odd);
    const QUrl url = QUrl::fromEncoded(FileUrl(odd).absoluteString().toLatin1());
    EXPECT_THAT(shootFolder(url), Optional(FileUrl(odd)));
}

TEST(ShootFolder, OfWhatIsNoLocalFileIsNone)
{
    EXPECT_EQ(shootFolder(QUrl(u"https://127.0.0.1/shoot"_s)), std::nullopt);
    EXPECT_EQ(shootFolder(QUrl()), std::nullopt);
}

TEST_F(ShootDropTest, OfThreeFoldersOnlyTheFirstIsSorted)
{
    for (const char *name : {"one", "two", "three"}) {
        (void)folder.write(std::filesystem::path(name) / "pool 1.mov");
    }
    SortEngine engine(seams());
    ShootDrop drop;
    drop.setEngine(&engine);
    const auto url = [this](const char *name) { return QUrl::fromLocalFile(QString::fromStdString(folder / name)); };
    const QList<QUrl> dropped{url("two"), url("one"), url("three")};
    ASSERT_TRUE(drop.accepts(dropped));
    drop.take(dropped);
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_EQ(engine.folder(), FileUrl(folder / "two"));
    EXPECT_THAT(namesOf(engine.clips()), ElementsAre(u"pool 1"_s));
    EXPECT_EQ(engine.recents().size(), 1u);
}

TEST_F(ShootDropTest, OfAClipSortsItsFolderWithAllTheOtherClipsInIt)
{
    makeClips({"kitchen 1", "pool 2"});
    SortEngine engine(seams());
    ShootDrop drop;
    drop.setEngine(&engine);
    drop.take({QUrl::fromLocalFile(QString::fromStdString(folder / "pool 2.mov"))});
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_THAT(namesOf(engine.clips()), ElementsAre(u"kitchen 1"_s, u"pool 2"_s));
}

TEST_F(ShootDropTest, WithoutAnItemIsRefused)
{
    const ShootDrop drop;
    EXPECT_FALSE(drop.accepts({}));
}

TEST_F(ShootDropTest, OfSomethingThatIsNoFileLeavesTheLanding)
{
    SortEngine engine(seams());
    ShootDrop drop;
    drop.setEngine(&engine);
    drop.take({QUrl(u"https://127.0.0.1/shoot"_s)});
    EXPECT_EQ(engine.stage().kind, StageKind::empty);
}
