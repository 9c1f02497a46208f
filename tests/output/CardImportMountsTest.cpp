// The road of a card, from its mount to its sorted copy, with the real importer and real mounts. Without the right to
// mount they are skipped, and say why.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <QtCore/QDate>
#include <unistd.h>

#include "core/copies/UnreadableCard.h"
#include "output/MediaImporter.h"
#include "tests/core/engine/SortEngineFixture.h"
#include "tests/output/Footage.h"
#include "tests/output/Mount.h"
#include "tests/support/FfmpegMedia.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using testing::SizeIs;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace {

class CardImportMountsTest : public SortEngineTest
{
protected:
    CardImportMountsTest() { fs::create_directories(shoots); }

    // afterEach: told on the task's thread of each file that is through.
    SortSeams importingSeams(std::function<void(int done)> afterEach = [](int) {})
    {
        auto parts = seams();
        parts.copyFiles = [afterEach](const auto &urls, const FileUrl &destination, const CopyOrder &order) {
            CopyOrder watched = order;
            watched.progress = [&](int done, int total) {
                afterEach(done);
                order.progress(done, total);
            };
            return MediaImporter::copyFiles(urls, destination, watched).map_error([](const ImportError &error) {
                return CopyFailure{error.description()};
            });
        };
        return parts;
    }

    // Three clips, and what a camera leaves beside them.
    static void shootOnto(const fs::path &card)
    {
        fs::create_directories(card / "DCIM/100MEDIA");
        writeContent(card / "DCIM/100MEDIA/kitchen 1.mov", footage(1, 2 * megabyte));
        writeContent(card / "DCIM/100MEDIA/kitchen 2.mov", footage(2, 3 * megabyte));
        writeContent(card / "DCIM/100MEDIA/pool 3.mov", footage(3, 100));
        writeContent(card / "DCIM/100MEDIA/._pool 3.mov", "companion");
        writeContent(card / "DCIM/index.xml", "<x/>");
    }

    fs::path dated(const std::string &name) const
    {
        return shoots / (name + " — " + QDate::currentDate().toString(Qt::ISODate).toStdString());
    }

    const fs::path shoots = folder / "Shoots";
};

} // namespace

TEST_F(CardImportMountsTest, TheCopyIsSortedAndTheCardCanBeTakenOutOnceItIsCopied)
{
    for (const Mount::Kind kind : {Mount::Kind::ext4, Mount::Kind::exfat}) {
        const Mount card(kind, 24 * megabyte);
        REQUIRE_MOUNTED(card);
        shootOnto(card.path());
        const auto onCard = filesBeneath(card.path());
        Gate gate;
        auto parts = importingSeams();
        parts.probeClip = [&](const FileUrl &url) {
            gate.pass();
            return probe(url);
        };
        SortEngine engine(parts, 4); // two clips at a time
        engine.setImportRoot(FileUrl(shoots));
        engine.setOptions({.verifyLevel = VerifyLevel::checksum});
        engine.importCard(FileUrl(card.path()), u"CARD"_s);
        const fs::path copy = engine.folder()->path();
        gate.awaitArrival(); // the sort has begun, so the copy is done
        EXPECT_EQ(filesBeneath(card.path()), onCard);
        EXPECT_TRUE(card.unmount());
        gate.open(3);
        ASSERT_TRUE(reaches(engine, StageKind::results));
        EXPECT_THAT(namesOf(engine.clips()), ElementsAre(u"kitchen 1"_s, u"kitchen 2"_s, u"pool 3"_s));
        EXPECT_EQ(filesBeneath(copy), (std::map<std::string, std::string>{{"kitchen 1.mov", footage(1, 2 * megabyte)},
                                                                          {"kitchen 2.mov", footage(2, 3 * megabyte)},
                                                                          {"pool 3.mov", footage(3, 100)}}));
    }
    EXPECT_TRUE(fs::exists(dated("CARD")));
    EXPECT_TRUE(fs::exists(dated("CARD").string() + " (2)")); // the second of the day
}

TEST_F(CardImportMountsTest, ACardThatIsPulledBeforeItIsListedIsSaidToHoldNoClips)
{
    const Mount card(Mount::Kind::ext4, 24 * megabyte);
    REQUIRE_MOUNTED(card);
    shootOnto(card.path());
    SortEngine engine(importingSeams());
    engine.setImportRoot(FileUrl(shoots));
    ASSERT_TRUE(card.unmount());
    engine.importCard(FileUrl(card.path()), u"CARD"_s);
    ASSERT_TRUE(reaches(engine, StageKind::emptyFolder));
    EXPECT_EQ(engine.stage().text, u"mount"_s);
    EXPECT_THAT(filesBeneath(shoots), IsEmpty());
}

TEST_F(CardImportMountsTest, ACardThatIsPulledWhileItIsCopiedFailsInWordsAndKeepsWhatCameOver)
{
    const Mount card(Mount::Kind::ext4, 24 * megabyte);
    REQUIRE_MOUNTED(card);
    shootOnto(card.path());
    SortEngine engine(importingSeams([&card](int done) {
        if (done == 1) {
            card.detach();
        }
    }));
    engine.setImportRoot(FileUrl(shoots));
    engine.importCard(FileUrl(card.path()), u"CARD"_s);
    ASSERT_TRUE(reaches(engine, StageKind::failed));
    EXPECT_EQ(engine.stage().text, u"kitchen 2.mov is no longer where it was — the card may have been ejected."_s);
    EXPECT_EQ(filesBeneath(dated("CARD")),
              (std::map<std::string, std::string>{{"kitchen 1.mov", footage(1, 2 * megabyte)}}));
}

TEST_F(CardImportMountsTest, ACardThatBreaksWhileItIsCopiedFailsInWordsAndLeavesNoHalfFile)
{
    Mount card(Mount::Kind::ext4, 24 * megabyte);
    REQUIRE_MOUNTED(card);
    shootOnto(card.path());
    ASSERT_TRUE(card.unmount()); // so that nothing of it is in memory
    card.mountAgain();
    SortEngine engine(importingSeams([&card](int done) {
        if (done == 1) {
            fs::resize_file(card.image(), megabyte); // the device answers with I/O errors from here on
        }
    }));
    engine.setImportRoot(FileUrl(shoots));
    engine.importCard(FileUrl(card.path()), u"CARD"_s);
    ASSERT_TRUE(reaches(engine, StageKind::failed));
    EXPECT_THAT(engine.stage().text.toStdString(), testing::HasSubstr("Input/output error"));
    EXPECT_EQ(filesBeneath(dated("CARD")),
              (std::map<std::string, std::string>{{"kitchen 1.mov", footage(1, 2 * megabyte)}}));
}

TEST_F(CardImportMountsTest, OfACardThatDeliversOnlySomeOfItsFoldersTheseAreImportedAndTheOthersAreTold)
{
    Mount card(Mount::Kind::ext4, 24 * megabyte);
    REQUIRE_MOUNTED(card);
    fs::remove(card.path() / "lost+found");
    fs::create_directories(card.path() / "DCIM/100MEDIA");
    fs::create_directories(card.path() / "DCIM/101MEDIA");
    writeContent(card.path() / "DCIM/100MEDIA/kitchen 1.mov", "film");
    writeContent(card.path() / "DCIM/101MEDIA/pool 2.mov", "film");
    ASSERT_TRUE(card.unmount());
    card.mountAgain();
    EXPECT_EQ(bytesOf(card.path() / "DCIM/100MEDIA/kitchen 1.mov"), "film"); // in memory from here on
    EXPECT_TRUE(fs::is_directory(card.path() / "DCIM/101MEDIA"));
    fs::resize_file(card.image(), 65536); // the device answers with I/O errors for all the rest
    SortEngine engine(importingSeams());
    engine.setImportRoot(FileUrl(shoots));
    engine.importCard(FileUrl(card.path()), u"CARD"_s);
    ASSERT_TRUE(reaches(engine, StageKind::results)) << engine.stage().text.toStdString();
    EXPECT_THAT(namesOf(engine.clips()), ElementsAre(u"kitchen 1"_s));
    EXPECT_THAT(namesBeneath(dated("CARD")), ElementsAre("kitchen 1.mov"));
    const UnreadableCard unreadable{
        .place = FileUrl(card.path()), .name = u"CARD"_s, .folders = {FileUrl(card.path() / "DCIM/101MEDIA")}};
    EXPECT_THAT(engine.unreadableCards(), ElementsAre(unreadable));
}

TEST_F(CardImportMountsTest, AFullShootsFolderIsSaidBeforeAnythingIsCopied)
{
    const Mount card(Mount::Kind::ext4, 24 * megabyte);
    REQUIRE_MOUNTED(card);
    shootOnto(card.path());
    const Mount full(Mount::Kind::memory, megabyte);
    REQUIRE_MOUNTED(full);
    SortEngine engine(importingSeams());
    engine.setImportRoot(FileUrl(full.path()));
    engine.importCard(FileUrl(card.path()), u"CARD"_s);
    ASSERT_TRUE(reaches(engine, StageKind::failed));
    EXPECT_EQ(engine.stage().text, u"Not enough space at the destination — needs 5.2 MB, 1 MB available."_s);
    EXPECT_THAT(filesBeneath(full.path()), IsEmpty());
}

TEST_F(CardImportMountsTest, AShootsFolderOnADiskThatIsGoneIsSaidToBeUnavailable)
{
    const Mount card(Mount::Kind::ext4, 24 * megabyte);
    REQUIRE_MOUNTED(card);
    shootOnto(card.path());
    const Mount disk(Mount::Kind::memory, 24 * megabyte);
    REQUIRE_MOUNTED(disk);
    fs::create_directory(disk.path() / "Shoots");
    SortEngine engine(importingSeams());
    engine.setImportRoot(FileUrl(disk.path() / "Shoots"));
    ASSERT_TRUE(disk.unmount());
    engine.importCard(FileUrl(card.path()), u"CARD"_s);
    EXPECT_EQ(engine.stage().text,
              u"Your Shoots folder isn't available right now — check it's connected, then try again."_s);
    EXPECT_TRUE(card.unmount());
}

TEST_F(CardImportMountsTest, AReadOnlyShootsFolderFailsInWords)
{
    const Mount card(Mount::Kind::ext4, 24 * megabyte);
    REQUIRE_MOUNTED(card);
    shootOnto(card.path());
    const Mount disk(Mount::Kind::memory, 24 * megabyte);
    REQUIRE_MOUNTED(disk);
    disk.makeReadOnly();
    SortEngine engine(importingSeams());
    engine.setImportRoot(FileUrl(disk.path()));
    engine.importCard(FileUrl(card.path()), u"CARD"_s);
    ASSERT_TRUE(reaches(engine, StageKind::failed));
    EXPECT_THAT(engine.stage().text.toStdString(), testing::HasSubstr("Read-only file system"));
}

TEST_F(CardImportMountsTest, ASecondCardTakesThePlaceOfTheOneThatIsBeingCopied)
{
    const Mount first(Mount::Kind::ext4, 24 * megabyte);
    REQUIRE_MOUNTED(first);
    shootOnto(first.path());
    const Mount second(Mount::Kind::ext4, 24 * megabyte);
    REQUIRE_MOUNTED(second);
    writeContent(second.path() / "garage 1.mov", "film");
    Gate gate;
    std::atomic<bool> isFirst = true;
    SortEngine engine(importingSeams([&](int) {
        if (isFirst.exchange(false)) {
            gate.pass();
        }
    }));
    engine.setImportRoot(FileUrl(shoots));
    engine.importCard(FileUrl(first.path()), u"FIRST"_s);
    gate.awaitArrival();
    engine.importCard(FileUrl(second.path()), u"SECOND"_s);
    gate.open();
    ASSERT_TRUE(reaches(engine, StageKind::results));
    EXPECT_THAT(namesOf(engine.clips()), ElementsAre(u"garage 1"_s));
    EXPECT_EQ(engine.folder(), FileUrl(dated("SECOND")));
    EXPECT_TRUE(waitUntil([&] { return first.unmount(); })); // let go after the file in hand
    ASSERT_TRUE(waitUntil([&] { return !engine.isCopying(); }));
    EXPECT_THAT(filesBeneath(dated("FIRST").native() + " (unfinished)"), ElementsAre(Key("kitchen 1.mov")));
}

TEST_F(CardImportMountsTest, WhateverACardIsNamedItsCopyLiesInOneFolderOfTheShootsFolder)
{
    const Mount card(Mount::Kind::ext4, 24 * megabyte);
    REQUIRE_MOUNTED(card);
    writeContent(card.path() / "kitchen 1.mov", "film");
    SortEngine engine(importingSeams());
    engine.setImportRoot(FileUrl(shoots));
    const std::vector<std::pair<QString, std::string>> names{
        {u"A/B:C"_s, "A-B-C"},           {u".."_s, ".."}, {u"."_s, "."}, {u""_s, ""},
        {u"/../../etc"_s, "-..-..-etc"}, {u"/"_s, "-"},   {u":"_s, "-"}, {u"Größe 東京\n"_s, "Größe 東京\n"}};
    std::set<fs::path> folders;
    for (const auto &[name, folderName] : names) {
        engine.importCard(FileUrl(card.path()), name);
        ASSERT_TRUE(reaches(engine, StageKind::results)) << folderName;
        EXPECT_THAT(engine.folder()->path().native(), StartsWith(dated(folderName).native()));
        EXPECT_EQ(engine.folder()->path().parent_path(), shoots);
        EXPECT_THAT(engine.clips(), SizeIs(1)) << folderName;
        folders.insert(engine.folder()->path());
    }
    EXPECT_THAT(folders, SizeIs(names.size()));
}
