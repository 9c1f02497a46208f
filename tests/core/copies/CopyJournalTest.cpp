// The files in which the copies that ended early are kept.
#include "core/copies/CopyJournal.h"

#include <csignal>

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "tests/support/FfmpegMedia.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

class CopyJournalTest : public testing::Test
{
protected:
    static UnfinishedCopy copyNamed(const QString &name)
    {
        return {.name = name, .folder = FileUrl("/Shoots/CARD"), .files = {{FileUrl("/card/a.mov"), {}}}};
    }

    std::vector<fs::path> files() const
    {
        return {fs::directory_iterator(folder / "data/Unfinished"), fs::directory_iterator()};
    }

    const TempFolder folder;
    const CopyJournal journal{folder / "data/Unfinished"};
};

TEST_F(CopyJournalTest, ACopyUnderWayOrCompleteIsNothingToTellOf)
{
    auto entry = journal.begin(copyNamed(u"CARD"_s));
    EXPECT_THAT(files(), SizeIs(1));
    EXPECT_THAT(journal.leftBehind(), IsEmpty()) << "somebody is at it";
    entry.close();
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(CopyJournalTest, ACopyUnderWayIsOnDiskInFull)
{
    const auto entry = journal.begin(copyNamed(u"CARD"_s));
    EXPECT_EQ(unfinishedCopyOf(QByteArray::fromStdString(bytesOf(entry.file()))), copyNamed(u"CARD"_s))
        << "the program may be killed at any moment";
}

TEST_F(CopyJournalTest, WhatCannotBeWrittenWholeLeavesNoFile)
{
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit fourBytes{.rlim_cur = 4, .rlim_max = before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &fourBytes), 0);
    const auto entry = journal.begin(copyNamed(u"CARD"_s));
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(entry.file(), fs::path());
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(CopyJournalTest, OtherFilesInItsFolderAreNoCopies)
{
    (void)folder.write("data/Unfinished/a.json", "{");
    (void)folder.write("data/Unfinished/a.txt", "{}");
    fs::create_directories(folder / "data/Unfinished/b.json");
    ASSERT_EQ(::mkfifo((folder / "data/Unfinished/c.json").c_str(), 0600), 0);
    EXPECT_THAT(journal.leftBehind(), IsEmpty());
    EXPECT_THAT(files(), SizeIs(4));
}
