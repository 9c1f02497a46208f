#include "core/copies/CopyLog.h"

#include <fstream>

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

CopyRecord wholeRecord()
{
    return {
        .kind = CopyKind::card,
        .source = FileUrl("/media/no \xff"),
        .volumeName = u"EOS \"5\""_s,
        .destination = FileUrl("/Shoots/CARD"),
        .level = VerifyLevel::checksum,
        .started = Date(std::chrono::milliseconds(1'700'000'000'123)),
        .ended = Date(std::chrono::milliseconds(1'700'000'009'456)),
        .files = {{.source = FileUrl("/media/a.mov"),
                   .destination = FileUrl("/Shoots/CARD/a.mov"),
                   .bytes = std::int64_t(1) << 40,
                   .state = CopyState::readBack,
                   .digest = QString(64, u'a'),
                   .isSourceDeleted = true},
                  {.source = FileUrl("/media/b.mov"), .state = CopyState::failed, .reason = u"Input/output error"_s}},
        .unreadable = {FileUrl("/media/DCIM")},
        .notCopied = {FileUrl("/media/photo.jpg")},
        .failure = u"b.mov couldn't be copied"_s,
        .proof = FileUrl("/Shoots/CARD/SHA256SUMS"),
        .proofProblem = u"none"_s};
}

CopyRecord recordOfKind(CopyKind kind, const char *source)
{
    return {.kind = kind, .source = FileUrl(source), .destination = FileUrl("/to")};
}

} // namespace

TEST(CopyLog, KeepsARecordWhole)
{
    const TempFolder folder;
    CopyLog(folder / "Copies").save(u"ab12"_s, wholeRecord());
    EXPECT_THAT(CopyLog(folder / "Copies").load(u"ab12"_s), ElementsAre(wholeRecord()));
    EXPECT_THAT(CopyLog(folder / "Copies").load(u"cd34"_s), IsEmpty());
}

TEST(CopyLog, KeepsTheLastImportAndTheLastRunIntoFolders)
{
    const TempFolder folder;
    const CopyLog log(folder.path());
    for (const CopyRecord &record :
         {recordOfKind(CopyKind::card, "/1"), recordOfKind(CopyKind::copy, "/2"), recordOfKind(CopyKind::move, "/3")}) {
        log.save(u"ab"_s, record);
    }
    EXPECT_THAT(log.load(u"ab"_s), ElementsAre(recordOfKind(CopyKind::card, "/1"), recordOfKind(CopyKind::move, "/3")));
    log.save(u"ab"_s, recordOfKind(CopyKind::card, "/4"));
    EXPECT_THAT(log.load(u"ab"_s), ElementsAre(recordOfKind(CopyKind::move, "/3"), recordOfKind(CopyKind::card, "/4")));
}

TEST(CopyLog, WithoutAFolderNothingIsKept)
{
    const TempFolder folder; // where a file without a folder would be
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    const CopyLog log{fs::path()};
    log.save(u"ab"_s, wholeRecord());
    EXPECT_THAT(log.load(u"ab"_s), IsEmpty());
    EXPECT_TRUE(fs::is_empty(folder.path()));
    fs::current_path(before);
}

TEST(CopyLog, WhatIsNotWholeCountsAsNotThere)
{
    const TempFolder folder;
    const CopyLog log(folder.path());
    log.save(u"ab"_s, wholeRecord());
    std::string json;
    std::getline(std::ifstream(folder / "ab.json"), json);
    const std::string whole = json;
    for (const auto &[from, to] : {std::pair<std::string, std::string>{"\"failure\"", "\"else\""},
                                   {"\"files\"", "\"else\""},
                                   {"\"unreadable\"", "\"else\""},
                                   {"\"notCopied\"", "\"else\""},
                                   {"\"destination\"", "\"else\""},
                                   {"\"source\"", "\"else\""},
                                   {"readBack", "proved"},
                                   {"[", "{"}}) {
        json = whole;
        (void)folder.write("ab.json", json.replace(json.find(from), from.size(), to));
        EXPECT_THAT(log.load(u"ab"_s), IsEmpty()) << from;
    }
    (void)folder.write("ab.json", whole);
    EXPECT_THAT(log.load(u"ab"_s), ElementsAre(wholeRecord()));
}

TEST(CopyLog, PruningKeepsTheShootsThatWereSavedLastAndWhatIsNoRecord)
{
    const TempFolder folder;
    const CopyLog log(folder.path());
    const auto now = fs::file_time_type::clock::now();
    for (const auto &[id, hours] : {std::pair("old", 3), {"new", 1}, {"older", 4}, {"newer", 0}}) {
        log.save(QLatin1StringView(id), wholeRecord());
        fs::last_write_time(folder / (std::string(id) + ".json"), now - std::chrono::hours(hours));
    }
    (void)folder.write("oldest.txt");
    fs::create_directory(folder / "oldest.json");
    fs::last_write_time(folder / "oldest.txt", now - std::chrono::hours(5));
    fs::last_write_time(folder / "oldest.json", now - std::chrono::hours(5));
    log.prune(4);
    EXPECT_THAT(log.load(u"older"_s), ElementsAre(wholeRecord()));
    log.prune(2);
    for (const char *const id : {"old", "older"}) {
        EXPECT_THAT(log.load(QLatin1StringView(id)), IsEmpty()) << id;
    }
    for (const char *const id : {"new", "newer"}) {
        EXPECT_THAT(log.load(QLatin1StringView(id)), ElementsAre(wholeRecord())) << id;
    }
    EXPECT_TRUE(fs::exists(folder / "oldest.txt"));
    EXPECT_TRUE(fs::exists(folder / "oldest.json"));
    CopyLog(folder / "gone").prune(0);
    CopyLog(fs::path()).prune(0);
}

TEST(CopyLog, APipeInPlaceOfAFileDoesNotHoldUp)
{
    const TempFolder folder;
    ASSERT_EQ(::mkfifo((folder / "ab.json").c_str(), 0600), 0);
    EXPECT_THAT(CopyLog(folder.path()).load(u"ab"_s), IsEmpty());
}
