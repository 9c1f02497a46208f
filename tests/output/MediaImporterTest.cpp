#include <gmock/gmock.h>

#include "tests/output/Footage.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

namespace fs = std::filesystem;

namespace {

using Steps = std::vector<std::pair<int, int>>;

ProgressCallback recordedIn(Steps &steps)
{
    return [&steps](int done, int total) { steps.emplace_back(done, total); };
}

std::vector<ClipToOrganize> hundredClips(const TempFolder &folder)
{
    std::vector<ClipToOrganize> clips;
    for (int i = 0; i < 100; ++i) {
        const std::string name = "card/" + std::to_string(i) + ".mov";
        clips.push_back(clipIn(folder.write(name, footage(static_cast<unsigned>(i), 100)), u"Kitchen"_s));
    }
    return clips;
}

} // namespace

TEST(MediaImporter, CopiesFilesOfAllSizesInInputOrderAndReportsEach)
{
    const TempFolder folder;
    std::vector<FileUrl> urls;
    std::vector<CopyResult> expected;
    std::map<std::string, std::string> contents;
    const std::size_t chunk = 4 * 1024 * 1024;
    for (const std::size_t size : {std::size_t(0), std::size_t(1), std::size_t(4096), chunk - 1, chunk, chunk + 1,
                                   5 * chunk, 9 * chunk + 4095}) {
        const std::string name = std::to_string(size) + ".mov";
        contents[name] = footage(static_cast<unsigned>(size), size);
        urls.emplace_back(folder.write("card" / fs::path(name), contents[name]));
        expected.push_back({urls.back(), FileUrl(folder / "shoot" / name)});
    }
    for (const VerifyLevel level : {VerifyLevel::sizeOnly, VerifyLevel::checksum}) {
        Steps steps;
        fs::remove_all(folder / "shoot");
        EXPECT_EQ(MediaImporter::copyFiles(urls, FileUrl(folder / "shoot"), {level, recordedIn(steps)}), expected);
        EXPECT_EQ(filesBeneath(folder / "shoot"), contents);
        EXPECT_EQ(steps, (Steps{{1, 8}, {2, 8}, {3, 8}, {4, 8}, {5, 8}, {6, 8}, {7, 8}, {8, 8}}));
    }
    EXPECT_EQ(filesBeneath(folder / "card"), contents);
}

TEST(MediaImporter, MakesTheDestinationWithAllThatIsMissingAboveIt)
{
    const TempFolder folder;
    const auto source = folder.write("a.mov", "a");
    ASSERT_TRUE(copyFiles({FileUrl(source)}, folder / "made/on/the way/"));
    EXPECT_THAT(filesBeneath(folder / "made"), ElementsAre(Pair("on/the way/a.mov", "a")));
}

TEST(MediaImporter, AnEmptyListGivesAnEmptyResultWhereThereIsRoom)
{
    const TempFolder folder;
    EXPECT_EQ(copyFiles({}, folder / "shoot"), std::vector<CopyResult>());
    EXPECT_TRUE(fs::is_directory(folder / "shoot"));
    EXPECT_EQ(copyByBin({}, folder / "root"), (std::map<QUuid, FileUrl>()));
    EXPECT_EQ(moveByBin({}, folder / "root"), (std::map<QUuid, FileUrl>()));
}

TEST(MediaImporter, PathsFromTheWorkingFolderAreAsGoodAsWholeOnes)
{
    const TempFolder folder;
    const fs::path before = fs::current_path();
    fs::create_directories(folder / "here");
    fs::current_path(folder / "here");
    writeContent("a.mov", "film");
    fs::create_symlink(folder.write("raid/C0001.mov", "on the RAID"), "link.mov");
    folder.write("here/CARD 1/.larkspan-0123456789abcdef.partial", "half a clip");
    EXPECT_TRUE(copyFiles({FileUrl("a.mov")}, "CARD 2"));
    EXPECT_EQ(moveByBin({clipIn("link.mov", u"A"_s)}, "root"),
              tl::unexpected(ImportError{LinkedSources{{FileUrl("link.mov")}}}));
    EXPECT_TRUE(moveByBin({clipIn("a.mov", u"A"_s)}, "root"));
    fs::current_path(before);
    EXPECT_THAT(namesBeneath(folder / "here"), ElementsAre("CARD 2/a.mov", "link.mov", "root/A/a.mov"));
}

TEST(MediaImporter, ADestinationWhoseCapacityCannotBeReadPassesTheSpaceCheck)
{
    const TempFolder folder;
    fs::resize_file(folder.write("a.mov"), std::uintmax_t(8) << 40); // takes no room, but counts
    const std::vector clips{clipIn(folder / "a.mov", u"Kitchen"_s)};
    std::stop_source stopped;
    stopped.request_stop();
    const auto organize = [&](const fs::path &root) {
        return MediaImporter::organizeByBin(clips, FileUrl(root), false,
                                            {VerifyLevel::sizeOnly, {}, stopped.get_token()});
    };
    EXPECT_EQ(organize(folder / "not made yet"), (std::map<QUuid, FileUrl>()));
    const auto existing = organize(folder.path());
    ASSERT_FALSE(existing);
    EXPECT_EQ(std::get<InsufficientSpace>(existing.error().reason).needed, std::int64_t(8) << 40);
}

TEST(MediaImporter, AMoveDeletesTheSourcesAndNothingElse)
{
    const TempFolder folder;
    const std::vector clips{clipIn(folder.write("card/a.mov", "a"), u"Kitchen"_s),
                            clipIn(folder.write("card/b.mov", "b"), u"Pool"_s)};
    folder.write("card/notes.txt", "n");
    ASSERT_TRUE(moveByBin(clips, folder / "root", VerifyLevel::sizeOnly));
    EXPECT_THAT(filesBeneath(folder / "card"), ElementsAre(Pair("notes.txt", "n")));
    EXPECT_THAT(filesBeneath(folder / "root"), ElementsAre(Pair("Kitchen/a.mov", "a"), Pair("Pool/b.mov", "b")));
}

TEST(MediaImporter, OneFailedClipOfAHundredInAMoveLeavesAllTheOthersInPlace)
{
    const TempFolder folder;
    const auto clips = hundredClips(folder);
    fs::remove(clips[41].url.path());
    const auto before = filesBeneath(folder / "card");
    Steps steps;
    const auto answer =
        MediaImporter::organizeByBin(clips, FileUrl(folder / "root"), true, {VerifyLevel::sizeOnly, recordedIn(steps)});
    EXPECT_EQ(answer, tl::unexpected(notClean({clips[41].url.path()})));
    EXPECT_EQ(filesBeneath(folder / "card"), before);
    EXPECT_THAT(namesBeneath(folder / "root"), SizeIs(99)) << "what was copied stays";
    EXPECT_THAT(steps, SizeIs(100));
    EXPECT_EQ(steps.back(), std::pair(100, 100));
}

TEST(MediaImporter, AMoveWhoseSourceCannotBeDeletedIsASuccess)
{
    const TempFolder folder;
    const std::vector clips{clipIn(folder.write("card/a.mov", "a"), u"Kitchen"_s)};
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(folder / "card", fs::perms(0555));
    {
        const Unprivileged nobody;
        const auto answer = moveByBin(clips, folder / "root");
        ASSERT_TRUE(answer) << answer.error().description().toStdString();
        EXPECT_EQ(*answer, (std::map<QUuid, FileUrl>{{clips[0].id, FileUrl(folder / "root/Kitchen/a.mov")}}));
    }
    EXPECT_EQ(bytesOf(folder / "card/a.mov"), "a");
    EXPECT_EQ(bytesOf(folder / "root/Kitchen/a.mov"), "a");
    fs::permissions(folder / "card", fs::perms::all);
}

TEST(MediaImporter, AMissingFileStopsCopyFilesButNotOrganizeByBin)
{
    const TempFolder folder;
    const fs::path first = folder.write("card/1.mov", "1");
    const fs::path missing = folder / "card/2.mov";
    const fs::path last = folder.write("card/3.mov", "3");
    EXPECT_EQ(copyFiles({FileUrl(first), FileUrl(missing), FileUrl(last)}, folder / "shoot"),
              tl::unexpected(ImportError{SourceMissing{FileUrl(missing)}}));
    EXPECT_THAT(filesBeneath(folder / "shoot"), ElementsAre(Pair("1.mov", "1"))) << "copied before stays";
    EXPECT_EQ(copyByBin({clipIn(first, u"A"_s), clipIn(missing, u"A"_s), clipIn(last, u"A"_s)}, folder / "root"),
              tl::unexpected(notClean({missing})));
    EXPECT_THAT(namesBeneath(folder / "root"), ElementsAre("A/1.mov", "A/3.mov"));
}

TEST(MediaImporter, FailuresAreListedInClipOrder)
{
    const TempFolder folder;
    folder.write("root/B", "a file where a folder is wanted");
    const std::vector clips{clipIn(folder / "gone.mov", u"A"_s), clipIn(folder.write("1.mov"), u"B"_s),
                            clipIn(folder.write("2.mov"), u"A"_s), clipIn(folder / "gone too.mov", u"A"_s)};
    EXPECT_EQ(copyByBin(clips, folder / "root"),
              tl::unexpected(notClean({folder / "gone.mov", folder / "1.mov", folder / "gone too.mov"})));
}

TEST(MediaImporter, StoppedCopyFilesGivesWhatItHas)
{
    const TempFolder folder;
    const std::vector urls{FileUrl(folder.write("card/1.mov", "1")), FileUrl(folder.write("card/2.mov", "2"))};
    std::stop_source stop;
    const auto answer =
        MediaImporter::copyFiles(urls, FileUrl(folder / "shoot"),
                                 {VerifyLevel::checksum, [&stop](int, int) { stop.request_stop(); }, stop.get_token()});
    EXPECT_EQ(answer, (std::vector{CopyResult{urls[0], FileUrl(folder / "shoot/1.mov")}}));
    EXPECT_THAT(namesBeneath(folder / "shoot"), ElementsAre("1.mov"));
}

TEST(MediaImporter, AStoppedMoveDeletesOnlyWhatItCopiedAndGivesThat)
{
    const TempFolder folder;
    const std::vector clips{clipIn(folder.write("card/1.mov", "1"), u"A"_s),
                            clipIn(folder.write("card/2.mov", "2"), u"A"_s)};
    std::stop_source stop;
    const auto answer = MediaImporter::organizeByBin(
        clips, FileUrl(folder / "root"), true,
        {VerifyLevel::checksum, [&stop](int, int) { stop.request_stop(); }, stop.get_token()});
    EXPECT_EQ(answer, (std::map<QUuid, FileUrl>{{clips[0].id, FileUrl(folder / "root/A/1.mov")}}));
    EXPECT_THAT(filesBeneath(folder / "card"), ElementsAre(Pair("2.mov", "2")));
}

TEST(MediaImporter, AStoppedMoveWithAFailureDeletesNothing)
{
    const TempFolder folder;
    const std::vector clips{clipIn(folder.write("card/1.mov", "1"), u"A"_s), clipIn(folder / "gone.mov", u"A"_s),
                            clipIn(folder.write("card/3.mov", "3"), u"A"_s)};
    std::stop_source stop;
    const auto stopAfterTwo = [&stop](int done, int) {
        if (done == 2) {
            stop.request_stop();
        }
    };
    EXPECT_EQ(MediaImporter::organizeByBin(clips, FileUrl(folder / "root"), true,
                                           {VerifyLevel::checksum, stopAfterTwo, stop.get_token()}),
              tl::unexpected(notClean({folder / "gone.mov"})));
    EXPECT_THAT(namesBeneath(folder / "card"), ElementsAre("1.mov", "3.mov"));
}

TEST(MediaImporter, TheDestinationMayLieInTheSourceAndTheSourceInTheDestination)
{
    const TempFolder folder;
    const fs::path inside = folder.write("shoot/a.mov", "a");
    ASSERT_TRUE(moveByBin({clipIn(inside, u"Kitchen"_s)}, folder / "shoot"));
    EXPECT_THAT(filesBeneath(folder / "shoot"), ElementsAre(Pair("Kitchen/a.mov", "a")));
    ASSERT_TRUE(moveByBin({clipIn(folder / "shoot/Kitchen/a.mov", u""_s)}, folder / "shoot"));
    EXPECT_THAT(filesBeneath(folder / "shoot"), ElementsAre(Pair("a.mov", "a")));
}

TEST(MediaImporter, AClipThatIsAlreadyInItsFolderMovesToAFreeName)
{
    const TempFolder folder;
    const fs::path source = folder.write("root/Kitchen/a.mov", "a");
    ASSERT_TRUE(moveByBin({clipIn(source, u"Kitchen"_s)}, folder / "root"));
    EXPECT_THAT(filesBeneath(folder / "root"), ElementsAre(Pair("Kitchen/a 2.mov", "a")));
}

TEST(MediaImporter, AnUnreadableSourceFailsAndLeavesNothingBehind)
{
    const TempFolder folder;
    const fs::path source = folder.write("card/a.mov", "a");
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(source, fs::perms::none);
    const Unprivileged nobody;
    EXPECT_EQ(copyFiles({FileUrl(source)}, folder / "shoot"),
              tl::unexpected(
                  ImportError{SystemFailure{FileUrl(source), std::make_error_code(std::errc::permission_denied)}}));
    EXPECT_THAT(namesBeneath(folder / "shoot"), IsEmpty());
}

TEST(MediaImporter, AReadOnlyDestinationFailsBeforeAnySourceIsTouched)
{
    const TempFolder folder;
    const std::vector clips{clipIn(folder.write("card/a.mov", "a"), u"Kitchen"_s)};
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(folder / "card", fs::perms::all);
    fs::create_directories(folder / "root");
    fs::permissions(folder / "root", fs::perms(0555));
    const Unprivileged nobody;
    EXPECT_EQ(moveByBin(clips, folder / "root"), tl::unexpected(notClean({clips[0].url.path()})));
    EXPECT_EQ(copyFiles({clips[0].url}, folder / "root/new"),
              tl::unexpected(ImportError{
                  SystemFailure{FileUrl(folder / "root/new"), std::make_error_code(std::errc::permission_denied)}}));
    EXPECT_EQ(bytesOf(folder / "card/a.mov"), "a");
}

TEST(MediaImporter, ADestinationThatIsAFileFails)
{
    const TempFolder folder;
    const auto file = folder.write("shoot", "no folder");
    EXPECT_EQ(
        copyFiles({FileUrl(folder.write("a.mov"))}, file),
        tl::unexpected(ImportError{SystemFailure{FileUrl(file), std::make_error_code(std::errc::not_a_directory)}}));
    EXPECT_EQ(bytesOf(file), "no folder");
}

TEST(MediaImporter, AnInterruptedRunsTemporaryFilesAreClearedAndOthersFilesStay)
{
    const TempFolder folder;
    folder.write("shoot/.larkspan-0123456789abcdef.partial", "half a clip");
    folder.write("shoot/.larkspan-notes.partial", "the editor's own");
    folder.write("shoot/0123456789abcdef.partial", "the editor's own");
    fs::create_directories(folder / "shoot/.larkspan-aaaaaaaaaaaaaaaa.partial");
    fs::create_symlink(folder.write("outside.mov", "o"), folder / "shoot/.larkspan-bbbbbbbbbbbbbbbb.partial");
    ASSERT_TRUE(copyFiles({FileUrl(folder.write("a.mov", "a"))}, folder / "shoot"));
    EXPECT_THAT(namesBeneath(folder / "shoot"),
                ElementsAre(".larkspan-bbbbbbbbbbbbbbbb.partial", ".larkspan-notes.partial", "0123456789abcdef.partial",
                            "a.mov"));
    EXPECT_EQ(bytesOf(folder / "outside.mov"), "o");
}

TEST(MediaImporter, WhatAnInterruptedRunLeftInAnotherFolderOfTheShootsFolderIsClearedByCopiesAndMovesAlike)
{
    const TempFolder folder;
    const std::string leftover = ".larkspan-0123456789abcdef.partial";
    const auto leave = [&] {
        for (const std::string place :
             {"Shoots/CARD 1", "Shoots/Kitchen", "Shoots", "Shoots/CARD 1/deeper", "linked"}) {
            folder.write(place + "/" + leftover, "half a clip");
        }
    };
    const auto left = [&] {
        std::vector<std::string> names;
        std::ranges::copy_if(namesBeneath(folder.path()), std::back_inserter(names),
                             [](const std::string &name) { return name.ends_with(".partial"); });
        return names;
    };
    const std::vector beyond{"Shoots/CARD 1/deeper/" + leftover, "linked/" + leftover};
    leave();
    fs::create_directory_symlink(folder / "linked", folder / "Shoots/link");
    const fs::path source = folder.write("card/a.mov", "a");
    ASSERT_TRUE(copyFiles({FileUrl(source)}, folder / "Shoots/CARD 2"));
    EXPECT_EQ(left(), beyond);
    leave();
    ASSERT_TRUE(copyFiles({FileUrl(source)}, folder / "Shoots/CARD 3/"));
    EXPECT_EQ(left(), beyond);
    leave();
    ASSERT_TRUE(moveByBin({clipIn(source, u"Pool"_s)}, folder / "Shoots"));
    EXPECT_EQ(left(), beyond);
}
