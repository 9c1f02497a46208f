// The power goes while footage is moved or a card is copied. Every clip must then be whole at its source or at its
// destination, and nothing under a final name may be partial or empty.
#include <gmock/gmock.h>
#include <QtCore/QCryptographicHash>

#include "output/ProofFile.h"
#include "tests/output/Footage.h"
#include "tests/power/PowerCuts.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::Gt;

namespace fs = std::filesystem;

namespace {

using Claims = PowerCutDisk::Claims;

struct ImportKind
{
    const char *name = "";
    bool isMove = false;
    Claims claims = Claims::rename;
    bool isRootNew = false; // made by another program just before, which syncs nothing
};

class ImportPowerCut : public testing::TestWithParam<ImportKind>
{
protected:
    void SetUp() override
    {
        REQUIRE_POWER_CUT_DISK();
        setClips({900, 5'000, 140'000});
        before["shoots"] = std::nullopt;
        if (!GetParam().isRootNew) {
            before["shoots/House/Kitchen/C0.MOV"] = taken;
        }
    }

    void setClips(const std::vector<std::size_t> &sizes)
    {
        for (const std::size_t size : sizes) {
            const std::string place = "card/DCIM/C" + std::to_string(clips.size()) + ".MOV";
            before[place] = clips[place] = footage(static_cast<unsigned>(size), size);
        }
    }

    // Moves the clips that are at their sources by this content of the disk, or copies them as a card's. True if the
    // importer says that all is done.
    bool import(const fs::path &disk, const DiskContent &content) const
    {
        std::vector<FileUrl> urls;
        std::vector<ClipToOrganize> toOrganize;
        for (const auto &[place, bytes] : clips) {
            if (const fs::path source = disk / place; content.contains(place)) {
                urls.emplace_back(source);
                toOrganize.push_back(clipIn(source, toOrganize.size() % 2 == 0 ? u"Kitchen"_s : u"Pool"_s));
            }
        }
        const fs::path house = disk / "shoots/House";
        return GetParam().isMove ? moveByBin(toOrganize, house, VerifyLevel::sizeOnly).has_value()
                                 : copyFiles(urls, house / "CARD", VerifyLevel::checksum).has_value();
    }

    bool isClip(const std::string &bytes) const
    {
        return std::ranges::any_of(clips, [&](const auto &clip) { return clip.second == bytes; });
    }

    // An empty file that holds a name for a copy may outlive the cut on a file system with no other way to claim one.
    bool mayHoldAName(const std::string &bytes) const { return GetParam().claims == Claims::neither && bytes.empty(); }

    // Every line names a copy that is there, with its digest.
    static void expectTrueProof(const DiskContent &left, const fs::path &folder, const std::string &proof)
    {
        const auto lines = QByteArray::fromStdString(proof).split('\n');
        EXPECT_EQ(lines.back(), "") << "the proof is cut short";
        for (const QByteArray &line : lines.first(lines.size() - 1)) {
            const auto copy = left.find(folder / line.mid(digestLength + 2).toStdString());
            ASSERT_TRUE(copy != left.end() && copy->second) << line.toStdString();
            EXPECT_EQ(
                line.first(digestLength),
                QCryptographicHash::hash(QByteArray::fromStdString(*copy->second), QCryptographicHash::Sha256).toHex());
        }
    }

    void expectNothingLost(const DiskContent &left, bool isDone) const
    {
        std::set<std::string> copies;
        for (const auto &[place, bytes] : left) {
            if (place.ends_with(proofFileName)) {
                expectTrueProof(left, fs::path(place).parent_path(), *bytes);
            } else if (bytes && place.starts_with("shoots") && !place.ends_with(".partial")) {
                EXPECT_TRUE(isClip(*bytes) || *bytes == taken || mayHoldAName(*bytes))
                    << place << " is partial: " << bytes->size() << " bytes";
                copies.insert(*bytes);
            }
        }
        for (const auto &[place, bytes] : clips) {
            const auto source = left.find(place);
            const bool isAtSource = source != left.end() && source->second == bytes;
            EXPECT_TRUE(isAtSource || (GetParam().isMove && copies.contains(bytes))) << place << " is lost";
            EXPECT_TRUE(copies.contains(bytes) || !isDone) << "the copy of " << place << " is lost";
        }
        if (!GetParam().isRootNew) {
            EXPECT_EQ(left.at("shoots/House/Kitchen/C0.MOV"), taken);
        }
    }

    void expectTheNextRunPutsAllInOrder(const DiskContent &left) const
    {
        PowerCutDisk disk(left, GetParam().claims);
        EXPECT_TRUE(import(disk.path(), left));
        disk.unmount();
        const DiskContent after = disk.left(Survival::nothing);
        expectNothingLost(after, true);
        for (const auto &[place, bytes] : after) {
            EXPECT_FALSE(place.ends_with(".partial")) << place;
        }
    }

    long cutAtCalls(int stride = 1) const
    {
        bool isDone = false;
        int checks = 0;
        return cutPowerAtCalls({
            .before = before,
            .claims = GetParam().claims,
            .act =
                [&](const fs::path &disk, const std::function<bool()> &) {
                    std::error_code cut;
                    fs::create_directories(disk / "shoots/House", cut);
                    isDone = import(disk, before);
                },
            .check =
                [&](const DiskContent &left) {
                    expectNothingLost(left, isDone);
                    constexpr int between = 31; // meets every kind of remains; each call would take minutes
                    if (++checks % between == 0) {
                        expectTheNextRunPutsAllInOrder(left);
                    }
                },
            .stride = stride,
        });
    }

    static constexpr qsizetype digestLength = 64; // in hexadecimal
    DiskContent before;
    std::map<std::string, std::string> clips; // by their place on the disk
    const std::string taken = "another clip of that name";
};

// One large file, which is copied by several threads and past the page cache.
class LargeImportPowerCut : public ImportPowerCut
{
protected:
    void SetUp() override
    {
        REQUIRE_POWER_CUT_DISK();
        setClips({4'200'001});
        before["shoots/House/Kitchen/C0.MOV"] = taken;
    }
};

std::string nameOf(const testing::TestParamInfo<ImportKind> &kind)
{
    return kind.param.name;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(
    , ImportPowerCut,
    testing::Values(ImportKind{.name = "Move", .isMove = true},
                    ImportKind{.name = "MoveIntoANewFolder", .isMove = true, .isRootNew = true},
                    ImportKind{.name = "MoveByLinks", .isMove = true, .claims = Claims::link},
                    ImportKind{.name = "MoveByHeldNames", .isMove = true, .claims = Claims::neither},
                    ImportKind{.name = "Card"}, ImportKind{.name = "CardIntoANewFolder", .isRootNew = true}),
    nameOf);
INSTANTIATE_TEST_SUITE_P(, LargeImportPowerCut, testing::Values(ImportKind{.name = "Move", .isMove = true}), nameOf);

TEST_P(ImportPowerCut, AtEveryCallNothingIsLostAndNothingPartialHasAFinalName)
{
    EXPECT_THAT(cutAtCalls(), Gt(100));
}

// Every call would take a minute.
TEST_P(LargeImportPowerCut, AtEveryFourthCallNothingIsLostAndNothingPartialHasAFinalName)
{
    EXPECT_THAT(cutAtCalls(4), Gt(20));
}
