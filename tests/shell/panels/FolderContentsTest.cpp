// The parts of a file panel: typed paths, the contents of a folder, its rows, quick places.
#include "shell/panels/FolderContents.h"

#include <QtCore/QStandardPaths>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QSignalSpy>

#include "core/clips/FootageNames.h"
#include "shell/panels/FolderEntries.h"
#include "shell/panels/QuickPlaces.h"
#include "shell/panels/TypedPath.h"
#include "tests/output/DeviceTree.h"
#include "tests/shell/HomeFolder.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::Optional;

namespace fs = std::filesystem;

namespace {

const fs::path openFolder = "/shoots/kitchen";
const fs::path ownFolder = "/home/ada";

FolderContents readClips(const fs::path &folder)
{
    return readFolder(folder, isVideoFile, {}).value();
}

std::vector<QString> rowNames(const FolderEntries &entries)
{
    std::vector<QString> names;
    for (int row = 0; row < entries.rowCount(); ++row) {
        names.push_back(entries.data(entries.index(row), FolderEntries::NameRole).toString());
    }
    return names;
}

} // namespace

TEST(TypedPath, IsTakenAsItIsWhenAbsolute)
{
    EXPECT_THAT(typedPath(u"/media/card"_s, openFolder, ownFolder), Optional(fs::path("/media/card")));
    EXPECT_THAT(typedPath(u"/media/card/"_s, openFolder, ownFolder), Optional(fs::path("/media/card")));
    EXPECT_THAT(typedPath(u"/"_s, openFolder, ownFolder), Optional(fs::path("/")));
    EXPECT_THAT(typedPath(u"/a//b/../c/."_s, openFolder, ownFolder), Optional(fs::path("/a/c")));
}

TEST(TypedPath, BeginsAtHomeWithATilde)
{
    EXPECT_THAT(typedPath(u"~"_s, openFolder, ownFolder), Optional(ownFolder));
    EXPECT_THAT(typedPath(u"~/"_s, openFolder, ownFolder), Optional(ownFolder));
    EXPECT_THAT(typedPath(u"~/Videos/Été 50%1"_s, openFolder, ownFolder), Optional(ownFolder / "Videos/Été 50%1"));
    EXPECT_THAT(typedPath(u"~backup"_s, openFolder, ownFolder), Optional(openFolder / "~backup"))
        << "a name may begin with one";
}

TEST(TypedPath, ContinuesTheOpenFolderOtherwise)
{
    EXPECT_THAT(typedPath(u"raw/day 1"_s, openFolder, ownFolder), Optional(openFolder / "raw/day 1"));
    EXPECT_THAT(typedPath(u".."_s, openFolder, ownFolder), Optional(fs::path("/shoots")));
    EXPECT_THAT(typedPath(u"../../.."_s, openFolder, ownFolder), Optional(fs::path("/")));
}

TEST(TypedPath, MayBePastedFromATerminalOrAFileManager)
{
    EXPECT_THAT(typedPath(u"  '/media/my card' \n"_s, openFolder, ownFolder), Optional(fs::path("/media/my card")));
    EXPECT_THAT(typedPath(u"\"/media/my card\""_s, openFolder, ownFolder), Optional(fs::path("/media/my card")));
    EXPECT_THAT(typedPath(u"file:///media/my%20card/"_s, openFolder, ownFolder), Optional(fs::path("/media/my card")));
    EXPECT_THAT(typedPath(u"'"_s, openFolder, ownFolder), Optional(openFolder / "'"));
}

TEST(TypedPath, NamesNothingWhenItIsEmptyOrNoFileHere)
{
    EXPECT_EQ(typedPath({}, openFolder, ownFolder), std::nullopt);
    EXPECT_EQ(typedPath(u" \n"_s, openFolder, ownFolder), std::nullopt);
    EXPECT_EQ(typedPath(u"''"_s, openFolder, ownFolder), std::nullopt);
    EXPECT_EQ(typedPath(u"file://elsewhere/shoot"_s, openFolder, ownFolder), std::nullopt);
    EXPECT_EQ(typedPath(QString(u"/a"_s) + QChar::Null + u"b"_s, openFolder, ownFolder), std::nullopt);
}

TEST(FolderContents, AreFoldersAndClipsInNaturalOrder)
{
    const TempFolder folder;
    for (const char *name : {"day 10/a.txt", "day 2/a.txt", "Day 1/a.txt", "clip 10.mov", "clip 2.MP4", "notes.txt"}) {
        (void)folder.write(name);
    }
    EXPECT_THAT(readClips(folder.path()).folders, ElementsAre("Day 1", "day 2", "day 10"));
    EXPECT_THAT(readClips(folder.path()).files, ElementsAre("clip 2.MP4", "clip 10.mov"));
}

TEST(FolderContents, LeaveOutHiddenEntriesAndPackagesAndFollowLinks)
{
    const TempFolder folder;
    (void)folder.write(".cache/a.mov");
    (void)folder.write(".hidden.mov");
    (void)folder.write("._clip.mov");
    (void)folder.write("Event.fcpbundle/a.mov");
    (void)folder.write("real/a.mov");
    fs::create_directory_symlink(folder / "real", folder / "link");
    fs::create_symlink(folder / "nowhere", folder / "broken");
    EXPECT_THAT(readClips(folder.path()).folders, ElementsAre("link", "real"));
    EXPECT_THAT(readClips(folder.path()).files, ElementsAre());
}

TEST(FolderContents, KeepNamesThatAreNotUtf8)
{
    const TempFolder folder;
    fs::create_directory(folder / "caf\xE9");
    (void)folder.write("\xFF.mov");
    EXPECT_EQ(readClips(folder.path()), (FolderContents{.folders = {"caf\xE9"}, .files = {"\xFF.mov"}}));
}

TEST(FolderContents, ExplainAFolderThatCannotBeRead)
{
    const TempFolder folder;
    fs::create_directory(folder / "locked");
    fs::permissions(folder / "locked", fs::perms::none);
    const fs::path file = folder.write("file");
    const auto problemOf = [](const fs::path &path) {
        const auto contents = readFolder(path, isVideoFile, {});
        return contents ? QString() : folderProblem(path, contents.error());
    };
    EXPECT_EQ(problemOf(folder / "gone"), u"“gone” isn't there."_s);
    EXPECT_EQ(problemOf(file), u"“file” isn't there."_s);
    {
        const Unprivileged user;
        EXPECT_EQ(problemOf(folder / "locked"), u"You don't have permission to open “locked”."_s);
    }
    EXPECT_EQ(folderProblem("/media/card", std::make_error_code(std::errc::io_error)),
              u"“card” can't be read: Input/output error."_s);
}

TEST(FolderContents, AMissingFolderIsReplacedByItsAncestorOrTheNextCandidate)
{
    const TempFolder folder;
    EXPECT_EQ(nearestFolder(folder / "a/b/c"), folder.path());
    EXPECT_EQ(nearestFolder("/"), "/");
    const std::vector<fs::path> candidates{folder / "gone", folder.write("file"), folder.path(), "/"};
    EXPECT_EQ(firstFolder(candidates), folder.path());
    EXPECT_EQ(firstFolder({}), "/");
}

TEST(QuickPlaces, AreTheExistingFoldersOfTheUserAndPluggedInVolumes)
{
    const HomeFolder user;
    const DeviceTree devices;
    devices.addCardReader("8:81");
    devices.addDisk("pci0000:00/0000:00:17.0/ata1/host0/target0:0:0/0:0:0:0/block/sdg", "8:97", false);
    fs::create_directory(user / "Videos");
    const fs::path table = user.write("mounts", "20 1 8:1 / / rw - ext4 /dev/sda1 rw\n"
                                                "21 20 0:5 / /proc rw - proc proc rw\n"
                                                "22 20 8:17 / /media/ada/EOS\\040DIGITAL rw - exfat /dev/sdb1 rw\n"
                                                "23 20 8:33 / /run/media/ada/Archive rw - ext4 /dev/sdc1 rw\n"
                                                "24 20 0:50 / /mnt/nas rw - nfs4 nas:/export rw\n"
                                                "25 20 8:49 / /media/ada/.hidden rw - ext4 /dev/sdd1 rw\n"
                                                "26 20 8:17 / /media/ada/EOS\\040DIGITAL rw - exfat /dev/sdb1 rw\n"
                                                "27 20 8:65 / /mediathek rw - ext4 /dev/sde1 rw\n"
                                                "28 20 8:81 / /mnt/card rw - exfat /dev/sdf1 rw\n"
                                                "29 20 8:97 / /mnt/disk rw - ext4 /dev/sdg rw\n");
    EXPECT_THAT(quickPlaces(table, devices.path()),
                ElementsAre(QuickPlace{u"Home"_s, user.path()}, QuickPlace{u"Videos"_s, user / "Videos"},
                            QuickPlace{u"EOS DIGITAL"_s, "/media/ada/EOS DIGITAL"},
                            QuickPlace{u"Archive"_s, "/run/media/ada/Archive"}, QuickPlace{u"card"_s, "/mnt/card"}));
    fs::create_directory(user / "Documents");
    EXPECT_THAT(quickPlaces(user / "no table", devices.path()),
                ElementsAre(QuickPlace{u"Home"_s, user.path()}, QuickPlace{u"Documents"_s, user / "Documents"},
                            QuickPlace{u"Videos"_s, user / "Videos"}));
}

TEST(FolderEntries, KeepUnchangedRowsWhenTheFolderChanges)
{
    FolderEntries entries;
    const QAbstractItemModelTester tester(&entries, QAbstractItemModelTester::FailureReportingMode::Fatal);
    QSignalSpy resets(&entries, &QAbstractItemModel::modelReset);
    QSignalSpy inserted(&entries, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&entries, &QAbstractItemModel::rowsRemoved);
    entries.show({.folders = {"a", "c", "d"}, .files = {"1.mov", "2.mov"}});
    EXPECT_EQ(resets.size(), 1);

    entries.update({.folders = {"a", "b", "d"}, .files = {"1.mov", "2.mov", "3.mov"}});
    EXPECT_THAT(rowNames(entries), ElementsAre(u"a"_s, u"b"_s, u"d"_s, u"1.mov"_s, u"2.mov"_s, u"3.mov"_s));
    EXPECT_EQ(entries.folderNames(), QStringList({u"a"_s, u"b"_s, u"d"_s}));
    EXPECT_EQ(resets.size(), 1);
    ASSERT_EQ(removed.size(), 1);
    EXPECT_EQ(removed[0].mid(1), QVariantList({1, 1}));
    ASSERT_EQ(inserted.size(), 2);
    EXPECT_EQ(inserted[0].mid(1), QVariantList({1, 1}));
    EXPECT_EQ(inserted[1].mid(1), QVariantList({5, 5}));

    entries.update({.folders = {"a", "b", "d"}, .files = {"1.mov", "2.mov", "3.mov"}});
    EXPECT_EQ(removed.size() + inserted.size(), 3) << "nothing changed, nothing told";
    entries.update({});
    EXPECT_EQ(entries.rowCount(), 0);
}

TEST(FolderEntries, TellFoldersFromFiles)
{
    FolderEntries entries;
    entries.show({.folders = {"a"}, .files = {"1.mov"}});
    EXPECT_TRUE(entries.data(entries.index(0), FolderEntries::FolderRole).toBool());
    EXPECT_FALSE(entries.data(entries.index(1), FolderEntries::FolderRole).toBool());
    EXPECT_FALSE(entries.data(entries.index(2), FolderEntries::NameRole).isValid());
}
