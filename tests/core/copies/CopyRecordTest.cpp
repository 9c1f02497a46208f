#include "core/copies/CopyRecord.h"

#include <gmock/gmock.h>

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;
using testing::Optional;

namespace {

CopyRecord withStates(std::initializer_list<CopyState> states)
{
    CopyRecord record{.destination = FileUrl("/Shoots/CARD")};
    std::int64_t bytes = 1;
    for (const CopyState state : states) {
        record.files.push_back({.source = FileUrl("/media/a.mov"), .bytes = bytes, .state = state});
        bytes *= 10;
    }
    return record;
}

} // namespace

TEST(CopyRecord, CountsTheFilesOfAState)
{
    const CopyRecord record = withStates({CopyState::readBack, CopyState::failed, CopyState::readBack});
    EXPECT_EQ(countOf(record, CopyState::readBack), 2);
    EXPECT_EQ(countOf(record, CopyState::failed), 1);
    EXPECT_EQ(countOf(record, CopyState::notReached), 0);
}

TEST(CopyRecord, OnlyFilesWithACopyOfThisRunCountAsCopiedBytes)
{
    EXPECT_EQ(copiedBytes(withStates({CopyState::readBack, CopyState::sizeEqual, CopyState::failed,
                                      CopyState::notReached, CopyState::alreadyThere})),
              11);
    EXPECT_EQ(copiedBytes(withStates({})), 0);
}

TEST(CopyRecord, FollowsItsFolderToANewName)
{
    CopyRecord record{.destination = FileUrl("/Shoots/CARD"),
                      .files = {{.source = FileUrl("/media/a.mov"), .destination = FileUrl("/Shoots/CARD/DCIM/a.mov")},
                                {.source = FileUrl("/media/b.mov")}},
                      .proof = FileUrl("/Shoots/CARD/SHA256SUMS")};
    relocate(record, FileUrl("/Shoots/CARD (unfinished)"));
    EXPECT_EQ(record.destination, FileUrl("/Shoots/CARD (unfinished)"));
    EXPECT_THAT(record.files[0].destination, Optional(FileUrl("/Shoots/CARD (unfinished)/DCIM/a.mov")));
    EXPECT_EQ(record.files[0].source, FileUrl("/media/a.mov"));
    EXPECT_EQ(record.files[1].destination, std::nullopt);
    EXPECT_THAT(record.proof, Optional(FileUrl("/Shoots/CARD (unfinished)/SHA256SUMS")));
}

TEST(CopyRecord, StaysAsItIsWhereItsFolderKeepsItsName)
{
    CopyRecord record{.destination = FileUrl("/Shoots/CARD"),
                      .files = {{.destination = FileUrl("/Shoots/CARD/a.mov")}},
                      .proof = FileUrl("/Shoots/CARD/SHA256SUMS")};
    const CopyRecord before = record;
    relocate(record, FileUrl("/Shoots/CARD"));
    EXPECT_EQ(record, before);
}

TEST(CopyRecord, WhatACameraWritesForItselfIsNotMissed)
{
    EXPECT_FALSE(wouldBeMissed(FileUrl("/media/INDEX.BDM")));
    EXPECT_FALSE(wouldBeMissed(FileUrl("/media/C0001M01.XML")));
    EXPECT_FALSE(wouldBeMissed(FileUrl("/media/AUTPRINT")));
    EXPECT_TRUE(wouldBeMissed(FileUrl("/media/DSC01.ARW")));
    EXPECT_TRUE(wouldBeMissed(FileUrl("/media/notes.txt")));
}

TEST(CopyRecord, ACardIsSafeToEraseIfEachFileIsProvedAndNothingElseWouldBeMissed)
{
    CopyRecord record = withStates({CopyState::readBack});
    record.notCopied = {FileUrl("/media/index.bdm")};
    EXPECT_TRUE(isSafeToErase(record));
    record.notCopied.emplace_back("/media/photo.jpg");
    EXPECT_TRUE(isEachFileProved(record));
    EXPECT_FALSE(isSafeToErase(record));
}
