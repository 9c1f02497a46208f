// The proof that a copy leaves beside its files, checked by the program that it is made for.
#include "output/ProofFile.h"

#include <cerrno>
#include <cstdlib>

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>
#include <sys/stat.h>

#include "core/clips/ClipListing.h"
#include "tests/output/Footage.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/Unprivileged.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace fs = std::filesystem;

namespace {

fs::path proofIn(const fs::path &folder)
{
    return folder / proofFileName;
}

// Returns true if sha256sum finds every line of the folder's proof in order, and every file as its line says.
bool isConfirmed(const fs::path &folder)
{
    const std::string command =
        "cd '" + folder.string() + "' && sha256sum --check --strict --quiet SHA256SUMS >/dev/null 2>&1";
    return std::system(command.c_str()) == 0;
}

std::size_t linesOf(const fs::path &folder)
{
    const std::string proof = bytesOf(proofIn(folder));
    return static_cast<std::size_t>(std::ranges::count(proof, '\n'));
}

// Fails one call that has to do with the temporary file of the proof, which comes after those of the copies.
class FailingProof : public FileOperations
{
public:
    int rename(int folder, const char *from, const char *to) const override
    {
        errno = EIO;
        return std::string_view(to) == proofFileName ? -1 : FileOperations::rename(folder, from, to);
    }
};

// Notes whether the proof was there when the first original went.
class WatchingRemoval : public FileOperations
{
public:
    explicit WatchingRemoval(fs::path proof) : m_proof(std::move(proof)) {}

    int remove(int folder, const char *name) const override
    {
        wasProvedFirst &= !std::string_view(name).ends_with(".mov") || fs::exists(m_proof);
        return FileOperations::remove(folder, name);
    }

    mutable bool wasProvedFirst = true;

private:
    fs::path m_proof;
};

class ProofFile : public testing::Test
{
protected:
    TempFolder folder;
    const fs::path shoot = folder / "shoot";
    std::optional<CopyRecord> record;

    CopyObserver observer()
    {
        return {.ended = [this](CopyRecord ended) { record = std::move(ended); }};
    }

    bool import(const std::vector<FileUrl> &urls, VerifyLevel level = VerifyLevel::checksum,
                const FileOperations &files = FileOperations::system(), const std::stop_token &stop = {})
    {
        return MediaImporter::copyFiles(urls, FileUrl(shoot), {level, [](int, int) {}, stop, observer()}, files)
            .has_value();
    }
};

} // namespace

TEST_F(ProofFile, Sha256sumAcceptsTheProofOfAnImportWhateverTheFilesAreCalled)
{
    const std::vector<std::string> names{"C0001.MP4",
                                         " blank first.mov",
                                         "two\nlines.mov",
                                         "back\\slash.mov",
                                         "return\r.mov",
                                         "-",
                                         "--check",
                                         "*star.mov",
                                         "#hash.mov",
                                         "\\",
                                         "no \xff.mov",
                                         "K\u00FCche \u2014 \u5BB6.mov",
                                         "'quoted' \"twice\".mov",
                                         "trailing \n"};
    std::vector<FileUrl> urls;
    for (const std::string &name : names) {
        urls.emplace_back(folder.write(fs::path("card") / name, "film of " + name));
    }
    ASSERT_TRUE(import(urls));
    EXPECT_EQ(linesOf(shoot), names.size());
    EXPECT_TRUE(isConfirmed(shoot));
    EXPECT_EQ(record->proof, FileUrl(proofIn(shoot)));
    for (const std::string &name : names) { // each line is about its own file
        writeContent(shoot / name, "other film");
        EXPECT_FALSE(isConfirmed(shoot)) << name;
        writeContent(shoot / name, "film of " + name);
    }
    EXPECT_TRUE(isConfirmed(shoot));
}

TEST_F(ProofFile, TheProofOfAnExportNamesEachFileFromTheRoot)
{
    const std::vector clips{clipIn(folder.write("card/1/a.mov", "one"), u"Kitchen"_s),
                            clipIn(folder.write("card/2/a.mov", "two"), u"Kitchen"_s),
                            clipIn(folder.write("card/b.mov", "b"), u"Hallway / Stairs"_s),
                            clipIn(folder.write("card/c.mov", "c"), u""_s)};
    ASSERT_TRUE(copyByBin(clips, shoot));
    EXPECT_TRUE(isConfirmed(shoot));
    const std::string proof = bytesOf(proofIn(shoot));
    EXPECT_THAT(proof, HasSubstr("  Kitchen/a.mov\n"));
    EXPECT_THAT(proof, HasSubstr("  Kitchen/a 2.mov\n"));
    EXPECT_THAT(proof, HasSubstr("  Hallway - Stairs/b.mov\n"));
    EXPECT_THAT(proof, HasSubstr("  c.mov\n"));
    EXPECT_EQ(linesOf(shoot), 4U);
}

TEST_F(ProofFile, ACopyComparedBySizeAloneIsNotClaimed)
{
    ASSERT_TRUE(import({FileUrl(folder.write("a.mov", "film"))}, VerifyLevel::sizeOnly));
    EXPECT_FALSE(fs::exists(proofIn(shoot)));
    EXPECT_EQ(record->proof, std::nullopt);
    EXPECT_EQ(record->files.front().digest, u""_s);
}

TEST_F(ProofFile, ALaterRunAddsItsLinesAndLeavesTheOthersAsTheyAre)
{
    const FileUrl film(folder.write("card/a.mov", "film"));
    ASSERT_TRUE(import({film}));
    const std::string first = bytesOf(proofIn(shoot));
    const std::string foreign = "# by hand\r\n\nSHA256 (photo.jpg) = 00\nnot a line at all";
    writeContent(proofIn(shoot), foreign);
    ASSERT_TRUE(import({film}));
    EXPECT_EQ(bytesOf(proofIn(shoot)), foreign + "\n" + first.substr(0, 66) + "a 2.mov\n");
}

TEST_F(ProofFile, ALineForTheSamePathIsReplaced)
{
    ASSERT_TRUE(import({FileUrl(folder.write("card/a.mov", "film")), FileUrl(folder.write("card/b.mov", "b"))}));
    fs::remove(shoot / "a.mov");
    ASSERT_TRUE(import({FileUrl(folder.write("card/a.mov", "other film"))}));
    EXPECT_EQ(linesOf(shoot), 2U);
    EXPECT_TRUE(isConfirmed(shoot));
}

TEST_F(ProofFile, ACopyThatWasOnlyMeasuredTakesAnOlderClaimOnItsPathAway)
{
    ASSERT_TRUE(import({FileUrl(folder.write("card/a.mov", "film")), FileUrl(folder.write("card/b.mov", "b"))}));
    fs::remove(shoot / "a.mov");
    ASSERT_TRUE(import({FileUrl(folder.write("card/a.mov", "tape"))}, VerifyLevel::sizeOnly));
    EXPECT_EQ(linesOf(shoot), 1U);
    EXPECT_TRUE(isConfirmed(shoot));
    fs::remove(shoot / "b.mov");
    ASSERT_TRUE(import({FileUrl(folder.write("card/b.mov", "b"))}, VerifyLevel::sizeOnly));
    EXPECT_FALSE(fs::exists(proofIn(shoot)));
}

TEST_F(ProofFile, AStoppedRunProvesWhatItHadReadBack)
{
    std::vector<FileUrl> urls;
    for (const char *name : {"a.mov", "b.mov", "c.mov"}) {
        urls.emplace_back(folder.write(fs::path("card") / name, name));
    }
    std::stop_source stop;
    const auto stopAfterTwo = [&stop](int done, int) { done == 2 ? (void)stop.request_stop() : void(); };
    ASSERT_TRUE(MediaImporter::copyFiles(urls, FileUrl(shoot),
                                         {VerifyLevel::checksum, stopAfterTwo, stop.get_token(), observer()}));
    EXPECT_EQ(linesOf(shoot), 2U);
    EXPECT_TRUE(isConfirmed(shoot));
    EXPECT_EQ(countOf(*record, CopyState::readBack), 2);
    EXPECT_EQ(record->files.back().state, CopyState::notReached);
    EXPECT_EQ(record->failure, u""_s);
}

TEST_F(ProofFile, AFailedRunProvesWhatItHadReadBack)
{
    const FileUrl good(folder.write("card/a.mov", "a"));
    const FileUrl gone(folder / "card/gone.mov");
    EXPECT_FALSE(import({good, gone, good}));
    EXPECT_EQ(linesOf(shoot), 1U);
    EXPECT_TRUE(isConfirmed(shoot));
    EXPECT_EQ(record->files[1].state, CopyState::failed);
    EXPECT_EQ(record->files[1].reason, u"It is no longer where it was."_s);
    EXPECT_EQ(record->files[2].state, CopyState::notReached);
    EXPECT_EQ(record->failure, u"gone.mov is no longer where it was — the card may have been ejected."_s);
}

TEST_F(ProofFile, AMoveProvesItsCopiesWhateverTheLevelAndBeforeAnOriginalGoes)
{
    const std::vector clips{clipIn(folder.write("card/a.mov", "a"), u"Kitchen"_s),
                            clipIn(folder.write("card/b.mov", "b"), u"Pool"_s)};
    const WatchingRemoval files(proofIn(shoot));
    ASSERT_TRUE(MediaImporter::organizeByBin(clips, FileUrl(shoot), true,
                                             {VerifyLevel::sizeOnly, [](int, int) {}, {}, observer()}, files));
    EXPECT_THAT(namesBeneath(folder / "card"), IsEmpty());
    EXPECT_TRUE(files.wasProvedFirst);
    EXPECT_EQ(linesOf(shoot), 2U);
    EXPECT_TRUE(isConfirmed(shoot));
    EXPECT_EQ(record->kind, CopyKind::move);
    EXPECT_EQ(record->level, VerifyLevel::checksum);
    EXPECT_TRUE(record->files[0].isSourceDeleted && record->files[1].isSourceDeleted);
}

TEST_F(ProofFile, AMoveTakesItsOriginalsOutOfTheProofThatTheirImportLeft)
{
    ASSERT_TRUE(import({FileUrl(folder.write("card/a.mov", "a")), FileUrl(folder.write("card/b.mov", "b")),
                        FileUrl(folder.write("card/c.mov", "c"))}));
    writeContent(shoot / "b.mov", "edited since");
    ASSERT_TRUE(
        moveByBin({clipIn(shoot / "a.mov", u"Kitchen"_s), clipIn(shoot / "b.mov", u"Pool"_s)}, folder / "bins"));
    EXPECT_TRUE(isConfirmed(folder / "bins"));
    const std::string left = bytesOf(proofIn(shoot));
    EXPECT_THAT(left, Not(HasSubstr("  a.mov")));
    EXPECT_THAT(left, HasSubstr("  b.mov")); // of other bytes, which nobody has any more
    EXPECT_THAT(left, HasSubstr("  c.mov"));
    // From bin to bin in one root.
    ASSERT_TRUE(moveByBin({clipIn(folder / "bins/Kitchen/a.mov", u"Pool"_s)}, folder / "bins"));
    EXPECT_TRUE(isConfirmed(folder / "bins"));
    EXPECT_EQ(linesOf(folder / "bins"), 2U);
}

TEST_F(ProofFile, AProofThatCannotBeWrittenIsNotedAndTheCopyIsGoodAllTheSame)
{
    ASSERT_TRUE(import({FileUrl(folder.write("card/a.mov", "a"))}, VerifyLevel::checksum, FailingProof()));
    EXPECT_EQ(record->proof, std::nullopt);
    EXPECT_EQ(record->proofProblem, u"Input/output error"_s);
    EXPECT_TRUE(isSafeToErase(*record));
    EXPECT_THAT(filesBeneath(shoot), ElementsAre(testing::Pair("a.mov", "a"))); // and nothing temporary
}

TEST_F(ProofFile, ARootThatCannotBeWrittenToDoesNotKeepAnExportFromItsFolders)
{
    fs::permissions(folder.path(), fs::perms::all);
    const std::vector clips{clipIn(folder.write("card/a.mov", "a"), u"Kitchen"_s)};
    fs::create_directories(shoot / "Kitchen");
    fs::permissions(shoot / "Kitchen", fs::perms::all);
    fs::permissions(shoot, fs::perms(0555));
    {
        const Unprivileged user;
        EXPECT_TRUE(MediaImporter::organizeByBin(clips, FileUrl(shoot), false,
                                                 {VerifyLevel::checksum, [](int, int) {}, {}, observer()}));
    }
    EXPECT_THAT(namesBeneath(shoot), ElementsAre("Kitchen/a.mov"));
    EXPECT_EQ(record->proofProblem, u"Permission denied"_s);
    fs::permissions(shoot, fs::perms::all);
}

TEST_F(ProofFile, WhatHasItsNameAndIsNoProofStays)
{
    const FileUrl film(folder.write("card/a.mov", "a"));
    const std::string bytes("no\0text", 7);
    folder.write("shoot/SHA256SUMS", bytes);
    ASSERT_TRUE(import({film}));
    EXPECT_EQ(bytesOf(proofIn(shoot)), bytes);
    EXPECT_NE(record->proofProblem, u""_s);

    fs::remove(proofIn(shoot));
    fs::create_symlink("elsewhere", proofIn(shoot));
    ASSERT_TRUE(import({film}));
    EXPECT_TRUE(fs::is_symlink(proofIn(shoot)));
    EXPECT_NE(record->proofProblem, u""_s);

    fs::remove(proofIn(shoot));
    fs::create_directory(proofIn(shoot));
    ASSERT_TRUE(import({film}));
    EXPECT_TRUE(fs::is_directory(proofIn(shoot)));
    EXPECT_NE(record->proofProblem, u""_s);
}

TEST_F(ProofFile, AFileOfTheShootWithItsNameIsNeverReplaced)
{
    ASSERT_TRUE(import({FileUrl(folder.write("card/SHA256SUMS", "film")), FileUrl(folder.write("card/a.mov", "a"))}));
    EXPECT_EQ(bytesOf(proofIn(shoot)), "film");
    EXPECT_NE(record->proofProblem, u""_s);
}

TEST_F(ProofFile, IsReadableForWhoeverMayLookIntoTheFolder)
{
    fs::create_directories(shoot);
    fs::permissions(shoot, fs::perms(0750));
    ASSERT_TRUE(import({FileUrl(folder.write("card/a.mov", "a"))}));
    EXPECT_EQ(fs::status(proofIn(shoot)).permissions(), fs::perms(0640));
}

TEST_F(ProofFile, IsNoClip)
{
    ASSERT_TRUE(import({FileUrl(folder.write("card/a.mov", "a"))}));
    ASSERT_TRUE(fs::exists(proofIn(shoot)));
    EXPECT_THAT(listClips(FileUrl(shoot)), ElementsAre(FileUrl(shoot / "a.mov")));
}

TEST_F(ProofFile, AnEmptyRunLeavesNone)
{
    ASSERT_TRUE(import({}));
    EXPECT_FALSE(fs::exists(proofIn(shoot)));
}

RC_GTEST_PROP(ProofLines, ComeAndGoByTheNamesOfTheirFiles, (const std::vector<std::string> &words))
{
    std::set<fs::path> names;
    for (std::string word : words) {
        std::erase(word, '\0');
        const fs::path name = fs::path(word).lexically_normal();
        if (!name.empty() && name.is_relative() && name.has_filename()) {
            names.insert(name);
        }
    }
    std::vector<ProofEntry> entries;
    for (const fs::path &name : names) {
        entries.push_back({name, std::string(64, 'a')});
    }
    const std::string before = "a comment\n";
    const std::string proof = updatedProof(before, entries);
    RC_ASSERT(static_cast<std::size_t>(std::ranges::count(proof, '\n')) == names.size() + 1);
    RC_ASSERT(updatedProof(proof, entries) == proof);
    for (ProofEntry &entry : entries) {
        entry.digest.clear();
    }
    RC_ASSERT(updatedProof(proof, entries) == before);
}
