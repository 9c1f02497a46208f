#include "classify/media/MovieMetadata.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include "classify/media/ClipProbe.h"
#include "tests/classify/media/MediaSamples.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto shootDay = std::chrono::sys_days{std::chrono::year{2026} / std::chrono::May / 4};

std::string headerBox(std::uint32_t since1904)
{
    return box("mvhd", bigEndian32(0) + bigEndian32(since1904) + bigEndian32(0) + bigEndian32(600) + bigEndian32(600) +
                           std::string(80, '\0'));
}

// 2026-05-04T09:30:00Z as a movie header counts.
constexpr std::uint32_t headerTime = 2'082'844'800u + 1'777'887'000u;

std::string userItem(const std::string &type, const std::string &text)
{
    const auto size = static_cast<char>(text.size());
    return box(type, std::string("\0", 1) + size + "\x55\xc4" + text);
}

std::string keyed(const std::vector<std::pair<std::string, std::string>> &items, std::uint32_t textType = 1)
{
    std::string keys = bigEndian32(0) + bigEndian32(static_cast<std::uint32_t>(items.size()));
    std::string list;
    std::uint32_t index = 0;
    for (const auto &[key, value] : items) {
        keys += box("mdta", key);
        list += box(bigEndian32(++index), box("data", bigEndian32(textType) + bigEndian32(0) + value));
    }
    return box("meta", box("hdlr", std::string(8, '\0') + "mdta" + std::string(13, '\0')) + box("keys", keys) +
                           box("ilst", list));
}

// A movie of metadata only.
ClipPtr probedMovie(const std::string &children)
{
    const TempFolder folder;
    return probeClip(
        FileUrl(folder.write("clip.mov", box("ftyp", "qt  " + bigEndian32(0) + "qt  ") + box("moov", children))));
}

const std::string make = "com.apple.quicktime.make";
const std::string model = "com.apple.quicktime.model";
const std::string creationDate = "com.apple.quicktime.creationdate";

} // namespace

TEST(MovieMetadata, OfMakeAndModelWhicheverComesFirstInTheFileIsReported)
{
    EXPECT_EQ(probedMovie(headerBox(0) + keyed({{make, "Acme"}, {model, "A1"}}))->cameraModel, u"Acme"_s);
    EXPECT_EQ(probedMovie(headerBox(0) + keyed({{model, "A1"}, {make, "Acme"}}))->cameraModel, u"A1"_s);
    EXPECT_EQ(
        probedMovie(headerBox(0) + box("udta", userItem("\251mod", "A1") + userItem("\251mak", "Acme")))->cameraModel,
        u"A1"_s);
    EXPECT_EQ(
        probedMovie(headerBox(0) + box("udta", userItem("\251mak", "Acme")) + keyed({{model, "A1"}}))->cameraModel,
        u"Acme"_s);
    EXPECT_EQ(
        probedMovie(headerBox(0) + keyed({{model, "A1"}}) + box("udta", userItem("\251mak", "Acme")))->cameraModel,
        u"A1"_s);
}

TEST(MovieMetadata, AnItemThatStandsTwiceDoesNotMoveTheOthers)
{
    EXPECT_EQ(
        probedMovie(headerBox(headerTime) + keyed({{"x", "1"}, {make, "Acme"}, {"x", "2"}, {model, "A1"}, {make, "B"}}))
            ->cameraModel,
        u"Acme"_s);
}

TEST(MovieMetadata, AnItemWithoutTextIsPassedOver)
{
    EXPECT_EQ(probedMovie(headerBox(0) + keyed({{make, "\x01\x02"}}, 13) + keyed({{model, "A1"}}))->cameraModel,
              u"A1"_s);
    EXPECT_EQ(probedMovie(headerBox(0) + keyed({{make, ""}, {model, "A1"}}))->cameraModel, u"A1"_s);
    EXPECT_EQ(probedMovie(headerBox(0))->cameraModel, u""_s);
}

TEST(MovieMetadata, TextMayBeUtf16AndPaddedWithNulls)
{
    EXPECT_EQ(probedMovie(headerBox(0) + keyed({{model, std::string("\0A\0\xe9", 4)}}, 2))->cameraModel, u"Aé"_s);
    EXPECT_EQ(probedMovie(headerBox(0) + keyed({{model, std::string("A1\0\0", 4)}}))->cameraModel, u"A1"_s);
}

TEST(MovieMetadata, WhatTheFfmpegProgramWritesIsRead)
{
    const std::string source = picture("64x48", "25", "0.2") + h264 + "-metadata creation_time=2026-05-04T09:30:00Z ";
    const auto &keys = sharedMedia("keys.mp4", source + "-metadata make=TestCam -movflags use_metadata_tags");
    EXPECT_EQ(probeClip(FileUrl(keys))->cameraModel, u"TestCam"_s);
    EXPECT_EQ(probeClip(FileUrl(keys))->creationDate, Date(shootDay) + 9h + 30min);
    const auto &user = sharedMedia("user.mov", source + "-metadata model=TestModel");
    EXPECT_EQ(probeClip(FileUrl(user))->cameraModel, u"TestModel"_s);
}

TEST(MovieMetadata, QuickTimesOwnDateWinsWithItsZone)
{
    EXPECT_EQ(probedMovie(headerBox(headerTime))->creationDate, Date(shootDay) + 9h + 30min);
    EXPECT_EQ(probedMovie(headerBox(headerTime) + keyed({{creationDate, "2026-05-03T22:15:07-0700"}}))->creationDate,
              Date(shootDay) + 5h + 15min + 7s);
    EXPECT_EQ(
        probedMovie(headerBox(headerTime) + keyed({{creationDate, "2026-05-04T01:00:00.250+02:00"}}))->creationDate,
        Date(shootDay) - 1h + 250ms);
    EXPECT_EQ(
        probedMovie(headerBox(headerTime) + box("udta", userItem("\251day", "2026-05-04T03:00:00Z")))->creationDate,
        Date(shootDay) + 3h);
}

TEST(MovieMetadata, ADateThatIsNoneLeavesTheHeaders)
{
    for (const char *text : {"", "yesterday", "2026", "2026-99-99T00:00:00Z", "1904-01-01T00:00:00Z"}) {
        EXPECT_EQ(probedMovie(headerBox(headerTime) + keyed({{creationDate, text}}))->creationDate,
                  Date(shootDay) + 9h + 30min)
            << text;
    }
}

// A camera writes the date into an AVI in the words of C, padded to an even length.
TEST(OtherContainers, AnAvisOwnDateIsTheClips)
{
    const auto &plain = sharedMedia("dated.avi", picture("64x48", "25", "0.4") + "-c:v mpeg4");
    const std::string content = bytesOf(plain);
    const std::string date = std::string("Mon May 04 09:30:00 2026\n\0", 26);
    const auto little = [](std::size_t value) {
        std::string bytes = bigEndian32(static_cast<std::uint32_t>(value));
        return std::string(bytes.rbegin(), bytes.rend());
    };
    // Into the header list, whose length and that of the whole file grow with it.
    const std::size_t list = content.find("LIST");
    const std::string idit = "IDIT" + little(date.size()) + date;
    const auto lengthAt = [&content](std::size_t place) {
        return static_cast<std::size_t>(static_cast<unsigned char>(content[place])) |
               static_cast<std::size_t>(static_cast<unsigned char>(content[place + 1])) << 8 |
               static_cast<std::size_t>(static_cast<unsigned char>(content[place + 2])) << 16;
    };
    std::string dated = content;
    dated.replace(4, 4, little(lengthAt(4) + idit.size()));
    dated.replace(list + 4, 4, little(lengthAt(list + 4) + idit.size()));
    dated.insert(list + 8 + lengthAt(list + 4), idit);
    const TempFolder folder;
    const ClipPtr clip = probeClip(FileUrl(folder.write("clip.avi", dated)));
    EXPECT_EQ(clip->creationDate, Date(shootDay) + 9h + 30min);
    EXPECT_EQ(clip->naturalSize, QSizeF(64, 48));
}

TEST(OtherContainers, TheDateThatAnMxfWasWrittenOnIsTheClips)
{
    const auto &plain = sharedMedia("clip.mxf", picture("320x180", "25", "1") + "-c:v mpeg2video -pix_fmt yuv422p");
    // The set that tells who wrote the file holds its date under the local tag 3C06: year, month, day, hours, minutes,
    // seconds and quarters of a millisecond of four.
    const std::string date("\x07\xea\x05\x04\x09\x1e\x00\x00", 8);
    const TempFolder folder;
    const auto file = folder.write("clip.mxf", patched(bytesOf(plain), std::string("\x3c\x06\x00\x08", 4), 4, date));
    EXPECT_EQ(probeClip(FileUrl(file))->creationDate, Date(shootDay) + 9h + 30min);
}

TEST(OtherContainers, AMatroskaFilesDateAndMakerAreRead)
{
    const auto &file =
        sharedMedia("tagged.mkv", picture("64x48", "25", "0.4") + h264 +
                                      "-metadata creation_time=2026-05-04T09:30:00Z -metadata make=Acme");
    const TempFolder folder;
    const ClipPtr clip = probeClip(FileUrl(folder.write("clip.mov", bytesOf(file))));
    EXPECT_EQ(clip->creationDate, Date(shootDay) + 9h + 30min);
}

TEST(MovieMetadata, AZeroDateCountsAsNoneAndTheFileSystemsIsTaken)
{
    const TempFolder folder;
    for (const std::uint32_t zero : {0u, 2'082'844'800u}) {
        const FileUrl url(folder.write("clip.mov", box("ftyp", "qt  ") + box("moov", headerBox(zero))));
        EXPECT_EQ(probeClip(url)->creationDate, dateFromFileSystem(fileDates(url)));
        EXPECT_LT(std::chrono::abs(probeClip(url)->creationDate - std::chrono::system_clock::now()), 1h);
    }
}

TEST(MovieMetadata, BrokenBoxesEndTheirListAndNoMore)
{
    const std::string good = keyed({{model, "A1"}});
    // A box that claims more than there is.
    EXPECT_EQ(probedMovie(headerBox(0) + good + bigEndian32(0x7fffffff) + "udta")->cameraModel, u"A1"_s);
    // A key index that no key stands for.
    EXPECT_EQ(probedMovie(headerBox(0) +
                          box("meta", box("hdlr", std::string(25, '\0')) + box("ilst", box(bigEndian32(9), "x"))) +
                          good)
                  ->cameraModel,
              u"A1"_s);
}

TEST(FileDates, TheEarlierOfBirthAndModificationIsTheFilesDate)
{
    const Date early(shootDay);
    const Date late = early + 24h;
    EXPECT_EQ(dateFromFileSystem({early, late}), early);
    EXPECT_EQ(dateFromFileSystem({late, early}), early) << "a copy is born when it is made";
    EXPECT_EQ(dateFromFileSystem({std::nullopt, late}), late);
    EXPECT_EQ(dateFromFileSystem({early, std::nullopt}), early);
}

TEST(FileDates, ACopyThatKeepsItsTimesKeepsItsDate)
{
    const TempFolder folder;
    const auto &stream = sharedMedia("undated.mts", picture("64x48", "25", "0.4") + h264 + "-f mpegts");
    const auto copy = folder.write("clip.mts", bytesOf(stream));
    const Date shot = Date(shootDay) + 9h;
    const struct timespec times[] = {{}, {.tv_sec = std::chrono::system_clock::to_time_t(shot)}};
    ASSERT_EQ(utimensat(AT_FDCWD, copy.c_str(), times, 0), 0);
    EXPECT_EQ(probeClip(FileUrl(copy))->creationDate, shot);
}

TEST(FileDates, AnUnsetClockIsNoDate)
{
    const TempFolder folder;
    const auto file = folder.write("clip.mov", "no movie");
    const struct timespec times[] = {{}, {}};
    ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
    EXPECT_EQ(fileDates(FileUrl(file)).modified, std::nullopt);
}

TEST(FileDates, AFileWithoutAnyDateHasTheDistantPast)
{
    EXPECT_EQ(dateFromFileSystem({}), distantPast);
    const TempFolder folder;
    EXPECT_EQ(probeClip(FileUrl(folder / "gone.mov"))->creationDate, distantPast);
}
