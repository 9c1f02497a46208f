#include <cerrno>
#include <csignal>

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "core/clips/ClipListing.h"
#include "core/copies/CardFolder.h"
#include "core/files/AtomicFile.h"
#include "core/files/FileUrls.h"
#include "core/projects/Project.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

namespace fs = std::filesystem;

// The paths below the folder, as bytes.
std::vector<std::string> clipsIn(const fs::path &folder)
{
    std::vector<std::string> names;
    for (const FileUrl &url : listClips(FileUrl(folder))) {
        names.push_back(url.path().lexically_relative(folder).native());
    }
    return names;
}

} // namespace

TEST(FileUrl, TakesNamesApartAsPeopleDo)
{
    const FileUrl url("/Shoot/KITCHEN 01.tar.MOV");
    EXPECT_EQ(url.lastPathComponent(), u"KITCHEN 01.tar.MOV"_s);
    EXPECT_EQ(url.baseName(), u"KITCHEN 01.tar"_s);
    EXPECT_EQ(url.pathExtension(), u"MOV"_s);
    EXPECT_EQ(FileUrl("/Shoot/").lastPathComponent(), u"Shoot"_s);
    EXPECT_EQ(FileUrl("/Shoot/.mov").pathExtension(), QString());
}

TEST(FileUrl, PercentEncodesAllButWhatTheEventMayHold)
{
    EXPECT_EQ(FileUrl("/Volumes/CARD/A 001.MOV").absoluteString(), u"file:///Volumes/CARD/A%20001.MOV"_s);
    EXPECT_EQ(FileUrl("/a-._~!$&'()*+,:=@/Z9").absoluteString(), u"file:///a-._~!$&'()*+,:=@/Z9"_s);
    EXPECT_EQ(FileUrl("/AZaz09").absoluteString(), u"file:///AZaz09"_s);
    EXPECT_EQ(FileUrl("/%;?#[]\"<>\n|").absoluteString(), u"file:///%25%3B%3F%23%5B%5D%22%3C%3E%0A%7C"_s);
    EXPECT_EQ(FileUrl("/é🏠").absoluteString(), u"file:///%C3%A9%F0%9F%8F%A0"_s);
    EXPECT_EQ(FileUrl("/\xff").absoluteString(), u"file:///%FF"_s);
}

TEST(FileUrl, OfALocalFileKeepsEveryByteAndLosesTheSlashAtItsEnd)
{
    for (const fs::path path : {"/", "/shoot", "/100% \xC3\xA9\xF0\x9F\x8F\xA0 #1 ?\n \xFF"}) {
        EXPECT_THAT(fileOfUrl(urlOfFile(FileUrl(path))), testing::Optional(FileUrl(path)));
    }
    EXPECT_THAT(fileOfUrl(QUrl(u"file:///shoot/"_s)), testing::Optional(FileUrl("/shoot")));
    EXPECT_THAT(fileOfUrl(QUrl(u"file://localhost/shoot"_s)), testing::Optional(FileUrl("/shoot")));
    EXPECT_THAT(fileOfUrl(QUrl(u"file://%1/shoot"_s.arg(QSysInfo::machineHostName()))),
                testing::Optional(FileUrl("/shoot")));
    EXPECT_EQ(fileOfUrl(QUrl(u"file://elsewhere/shoot"_s)), std::nullopt);
    EXPECT_EQ(fileOfUrl(QUrl(u"file://localhost"_s)), std::nullopt);
    EXPECT_EQ(fileOfUrl(QUrl(u"https://127.0.0.1/shoot"_s)), std::nullopt);
    EXPECT_EQ(fileOfUrl(QUrl()), std::nullopt);
}

TEST(FileUrl, IsStoredAsItsPathOrElseAsItsUrlAndTextThatCannotNameAFileIsNone)
{
    EXPECT_EQ(FileUrl("/a b").storedPath(), u"/a b"_s);
    EXPECT_EQ(FileUrl("/a b\xff").storedPath(), u"file:///a%20b%FF"_s);
    EXPECT_EQ(FileUrl::fromStoredPath(u"file:///a%20b%FF"_s), FileUrl("/a b\xff"));
    for (const QString &text : {QString(), u"file://"_s, QString(u"/a"_s + QChar(0) + u"b"_s), u"file:///a%00b"_s}) {
        EXPECT_EQ(FileUrl::fromStoredPath(text), std::nullopt) << text.toStdString();
    }
}

TEST(ClipListing, FindsEveryVideoTypeInAnyCaseAndNothingElse)
{
    const TempFolder folder;
    for (const char *name : {"a.mp4", "b.MOV", "c.m4v", "d.mxf", "e.avi", "f.MTS", "g.m2ts", "h.braw", "i.insv",
                             "j.txt", "k.movie", "mov", "l.jpg"}) {
        (void)folder.write(name);
    }
    EXPECT_THAT(clipsIn(folder.path()),
                ElementsAre("a.mp4", "b.MOV", "c.m4v", "d.mxf", "e.avi", "f.MTS", "g.m2ts", "h.braw", "i.insv"));
}

TEST(ClipListing, SkipsCompanionFilesHiddenFilesAndHiddenFolders)
{
    const TempFolder folder;
    for (const char *name : {"._clip.mov", "CLIP.MOV", ".hidden.mov", ".Trashes/old.mov", "sub/.cache/x.mov"}) {
        (void)folder.write(name);
    }
    EXPECT_THAT(clipsIn(folder.path()), ElementsAre("CLIP.MOV"));
}

TEST(ClipListing, DoesNotLookIntoPackages)
{
    const TempFolder folder;
    for (const std::string type : {"app", "bundle", "fcpbundle", "fcparch", "imovielibrary", "photoslibrary", "theater",
                                   "framework", "FCPBUNDLE"}) {
        (void)folder.write("Old." + type + "/Original Media/a.mov");
    }
    (void)folder.write("Card/a.mov");
    EXPECT_THAT(clipsIn(folder.path()), ElementsAre("Card/a.mov"));
}

TEST(ClipListing, OrdersNamesAsPeopleCountAndLettersBeforeCase)
{
    const TempFolder folder;
    for (const char *name : {"clip10.mov", "clip2.mov", "Clip1.mov", "b/1.mov", "a/2.mov", "B2.mov", "b1.mov"}) {
        (void)folder.write(name);
    }
    EXPECT_THAT(clipsIn(folder.path()),
                ElementsAre("a/2.mov", "b/1.mov", "b1.mov", "B2.mov", "Clip1.mov", "clip2.mov", "clip10.mov"));
}

TEST(ClipListing, NamesThatDifferOnlyInCaseAlwaysStandInTheSameOrder)
{
    const TempFolder folder;
    for (const char *name : {"a.mov", "A.MOV", "a.MOV", "A.mov"}) {
        (void)folder.write(name);
    }
    EXPECT_THAT(clipsIn(folder.path()), ElementsAre("A.MOV", "A.mov", "a.MOV", "a.mov"));
}

TEST(ClipListing, AFolderNamedLikeAClipCountsAsOneAndIsLookedInto)
{
    const TempFolder folder;
    (void)folder.write("x.mov/inside.mp4");
    EXPECT_THAT(clipsIn(folder.path()), ElementsAre("x.mov", "x.mov/inside.mp4"));
}

TEST(ClipListing, AnEmptyOrMissingFolderYieldsNothing)
{
    const TempFolder folder;
    EXPECT_THAT(clipsIn(folder.path()), IsEmpty());
    EXPECT_THAT(clipsIn(folder / "gone"), IsEmpty());
    EXPECT_THAT(clipsIn(folder.write("clip.mov")), IsEmpty()) << "a file is no folder";
}

TEST(ClipListing, AnUnreadableFolderYieldsNothingAndAnUnreadableSubFolderIsPassedOver)
{
    const TempFolder folder;
    (void)folder.write("a.mov");
    (void)folder.write("locked/b.mov");
    (void)folder.write("open/c.mov");
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(folder / "locked", fs::perms::none);
    {
        const Unprivileged user;
        EXPECT_THAT(clipsIn(folder.path()), ElementsAre("a.mov", "open/c.mov"));
        EXPECT_THAT(clipsIn(folder / "locked"), IsEmpty());
    }
    fs::permissions(folder / "locked", fs::perms::all);
}

TEST(ClipListing, ReadsNoFolderAfterAStop)
{
    const TempFolder folder;
    (void)folder.write("a.mov");
    std::stop_source stop;
    stop.request_stop();
    EXPECT_THAT(listClips(FileUrl(folder.path()), stop.get_token()), IsEmpty());
    EXPECT_THAT(listCard(FileUrl(folder / "gone"), stop.get_token()).unreadable, IsEmpty());
}

TEST(ClipListing, LinksToFoldersAreNotFollowedSoALoopEnds)
{
    const TempFolder folder;
    (void)folder.write("sub/a.mov");
    fs::create_directory_symlink(folder.path(), folder / "sub/loop");
    fs::create_symlink("nowhere", folder / "broken.mov");
    EXPECT_THAT(clipsIn(folder.path()), ElementsAre("broken.mov", "sub/a.mov"));
}

TEST(ClipListing, NamesOfAnyBytesAreFound)
{
    const TempFolder folder;
    const std::vector<std::string> names{"\xF0\x9F\x8F\xA0.mov",
                                         "line\nbreak.mov",
                                         "100%.mov",
                                         "a&b.mov",
                                         "\"quoted\" 'too'.mov",
                                         "bad\xff\xfe.mov",
                                         std::string(251, 'n') + ".mov"};
    for (const std::string &name : names) {
        (void)folder.write(name);
    }
    EXPECT_THAT(clipsIn(folder.path()), testing::UnorderedElementsAreArray(names));
}

TEST(CardFolder, IsNamedAfterTheCardAndTheDay)
{
    const TempFolder root;
    const QDate day(2026, 5, 4);
    EXPECT_EQ(datedImportFolder(u"CARD"_s, root.path(), day).path(), root / "CARD — 2026-05-04");
    EXPECT_EQ(datedImportFolder(u"A/B:C"_s, root.path(), day).path(), root / "A-B-C — 2026-05-04");
    EXPECT_THAT(clipsIn(root.path()), IsEmpty());
    EXPECT_TRUE(fs::is_empty(root.path())) << "the copy makes the folder";
}

TEST(CardFolder, TheSameCardTwiceADayGetsANumberOnTheBaseName)
{
    const TempFolder root;
    const QDate day(2026, 5, 4);
    fs::create_directory(root / "CARD — 2026-05-04");
    EXPECT_EQ(datedImportFolder(u"CARD"_s, root.path(), day).path(), root / "CARD — 2026-05-04 (2)");
    (void)root.write("CARD — 2026-05-04 (2)");
    EXPECT_EQ(datedImportFolder(u"CARD"_s, root.path(), day).path(), root / "CARD — 2026-05-04 (3)");
}

TEST(AtomicFile, ReplacesTheWholeFileAndLeavesNothingElse)
{
    const TempFolder folder;
    const auto path = folder.write("event.fcpxml", "old and longer");
    ASSERT_TRUE(writeFileAtomically(path, "new"));
    EXPECT_EQ(bytesOf(path), "new");
    EXPECT_THAT(std::vector<fs::path>(fs::directory_iterator(folder.path()), fs::directory_iterator()), SizeIs(1));
}

TEST(AtomicFile, NamesOfAnyBytesWork)
{
    const TempFolder folder;
    const auto path = folder / "bad\xff" / (std::string(248, 'n') + ".fcpxml");
    fs::create_directory(path.parent_path());
    ASSERT_TRUE(writeFileAtomically(path, "text"));
    EXPECT_EQ(bytesOf(path), "text");
}

TEST(AtomicFile, AFileThatCannotBeWrittenWholeLeavesTheOldOneAndNothingElse)
{
    const TempFolder folder;
    const auto path = folder.write("event.fcpxml", "old");
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit fourBytes{.rlim_cur = 4, .rlim_max = before.rlim_max}; // a write that is cut short, then an error
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &fourBytes), 0);
    const auto answer = writeFileAtomically(path, "new and longer");
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    ASSERT_FALSE(answer);
    EXPECT_EQ(answer.error(), std::errc::file_too_large);
    EXPECT_EQ(bytesOf(path), "old");
    EXPECT_THAT(std::vector<fs::path>(fs::directory_iterator(folder.path()), fs::directory_iterator()), SizeIs(1));
}

TEST(AtomicFile, ANameAloneIsAFileOfTheWorkingFolder)
{
    const TempFolder folder;
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    const auto answer = writeFileAtomically("event.fcpxml", "text");
    fs::current_path(before);
    ASSERT_TRUE(answer);
    EXPECT_EQ(bytesOf(folder / "event.fcpxml"), "text");
}

TEST(AtomicFile, ANewFileIsReadAndWrittenByWhomTheUserLets)
{
    const TempFolder folder;
    const mode_t before = ::umask(0002);
    const auto answer = writeFileAtomically(folder / "event.fcpxml", "text");
    ::umask(before);
    ASSERT_TRUE(answer);
    EXPECT_EQ(fs::status(folder / "event.fcpxml").permissions(), static_cast<fs::perms>(0664));
}

TEST(AtomicFile, NeitherAWriteNorAFailureLeavesAFileOpen)
{
    const TempFolder folder;
    const auto openFiles = [] {
        return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
    };
    const auto before = openFiles();
    ASSERT_TRUE(writeFileAtomically(folder / "event.fcpxml", "text"));
    ASSERT_FALSE(writeFileAtomically(folder.path(), "text"));
    EXPECT_EQ(openFiles(), before);
}

TEST(AtomicFile, AFailureSaysWhyAndLeavesTheOldFile)
{
    const TempFolder folder;
    const auto path = folder.write("locked/event.fcpxml", "old");
    EXPECT_EQ(writeFileAtomically(folder / "gone/event.fcpxml", "new").error(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(writeFileAtomically(folder / "locked", "new").error(), std::errc::is_a_directory);
    fs::permissions(folder.path(), fs::perms::all);
    const Unprivileged user;
    EXPECT_EQ(writeFileAtomically(path, "new").error(), std::errc::permission_denied);
    EXPECT_EQ(bytesOf(path), "old");
}

TEST(AtomicFile, AnErrorNumberOfAnEarlierCallIsNoFailure)
{
    const TempFolder folder;
    errno = EIO;
    EXPECT_TRUE(writeFileAtomically(folder / "event.fcpxml", "text"));
}

TEST(LastingFolders, AreMadeWithAllThatAreMissingAboveThemAndElseTheReasonIsGiven)
{
    const TempFolder folder;
    ASSERT_TRUE(makeLastingFolders(folder / "a/b/c"));
    EXPECT_TRUE(fs::is_directory(folder / "a/b/c"));
    EXPECT_TRUE(makeLastingFolders(folder / "a/b/c")) << "which are there already";
    (void)folder.write("file");
    EXPECT_EQ(makeLastingFolders(folder / "file/a").error(), std::errc::file_exists);
}

TEST(ContentOf, AFileOfMoreBytesThanAreAskedForCountsAsEmpty)
{
    const TempFolder folder;
    const auto file = folder.write("index.json", "12345");
    EXPECT_EQ(contentOf(file, 5), "12345");
    EXPECT_EQ(contentOf(file, 4), QByteArray());
    EXPECT_EQ(contentOf(folder / "gone", 5), QByteArray());
}

TEST(Project, IsNamedAfterItsStandardizedFolderAlone)
{
    EXPECT_EQ(projectID(FileUrl("/Shoot")), projectID(FileUrl("/Shoot/.")));
    EXPECT_EQ(projectID(FileUrl("/Shoot")), projectID(FileUrl("/Other/../Shoot/")));
    EXPECT_NE(projectID(FileUrl("/Shoot")), projectID(FileUrl("/shoot")));
    EXPECT_EQ(projectID(FileUrl("")), u"1505"_s) << "the hash of nothing is 5381";
    EXPECT_EQ(projectID(FileUrl("/a")), u"5970b5"_s) << "(5381 * 33 + 47) * 33 + 97";
}
