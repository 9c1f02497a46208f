// The watcher on real mounts: files in loop devices, which the test's own device tree tells to be cards in a reader.
// Without the right to mount they are skipped, and say why.
#include <cerrno>
#include <cstring>
#include <fstream>

#include <gmock/gmock.h>
#include <sys/mount.h>

#include "output/VolumeWatcher.h"
#include "tests/output/DeviceTree.h"
#include "tests/output/Mount.h"
#include "tests/support/OwnMounts.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

namespace {

class OwnMounts : public testing::Environment
{
    void SetUp() override
    {
        if (!takeOwnMounts() && errno != EPERM) {
            Mount::forbid(std::string("mounts can't be kept private here: ") + std::strerror(errno));
        }
    }
};
const auto *const ownMounts = testing::AddGlobalTestEnvironment(new OwnMounts);

class VolumeMountsTest : public testing::Test
{
protected:
    struct Offer
    {
        fs::path path;
        QString name;

        friend bool operator==(const Offer &, const Offer &) = default;
    };

    VolumeMountsTest()
    {
        QObject::connect(&watcher, &VolumeWatcher::pendingCandidateChanged, [this] {
            if (const auto &candidate = watcher.pendingCandidate(); candidate && !candidate->clipCount) {
                offers.push_back({candidate->url.path(), candidate->displayName});
            }
        });
    }

    // Makes a mounted volume a card with one clip, in a reader.
    void makeCard(const Mount &mount) const
    {
        fs::create_directories(mount.path() / "DCIM/100");
        std::ofstream(mount.path() / "DCIM/100/C0001.MP4") << "film";
        tree.addCardReader(mount.deviceNumber());
    }

    // The same, and takes it out, to be put in while the watcher looks.
    void makeCardForLater(const Mount &mount) const
    {
        makeCard(mount);
        ASSERT_TRUE(mount.unmount());
    }

    [[nodiscard]] bool isOffered(const fs::path &path) const
    {
        return waitUntil([&] {
            const auto &candidate = watcher.pendingCandidate();
            return candidate && candidate->url == FileUrl(path) && candidate->clipCount == 1;
        });
    }

    // Puts another card in and answers. Whatever the kernel told of before has been heard by then.
    void settle(Mount &other)
    {
        other.mountAgain();
        ASSERT_TRUE(isOffered(other.path()));
        watcher.decline();
        ASSERT_TRUE(other.unmount());
    }

    // Expects the offer of a card that is put in, and that it can be taken out as soon as it is counted.
    void expectOfferOf(Mount &card)
    {
        makeCardForLater(card);
        watcher.startWatching();
        card.mountAgain();
        EXPECT_TRUE(isOffered(card.path()));
        EXPECT_TRUE(card.unmount());
        EXPECT_THAT(offers, ElementsAre(Offer{card.path(), u"mount"_s}));
    }

    const TempFolder folder;
    const DeviceTree tree;
    std::vector<Offer> offers;
    VolumeWatcher watcher{{.deviceTree = tree.path(), .byLabel = tree.byLabel()}};
};

} // namespace

TEST_F(VolumeMountsTest, ACardIsOfferedAsItIsMountedAndNothingIsHeldOpenOnIt)
{
    Mount card(Mount::Kind::ext4, 16 * megabyte);
    REQUIRE_MOUNTED(card);
    expectOfferOf(card);
}

TEST_F(VolumeMountsTest, ACardOfTheUsualFileSystemIsOfferedToo)
{
    Mount card(Mount::Kind::exfat, 16 * megabyte);
    REQUIRE_MOUNTED(card);
    expectOfferOf(card);
}

TEST_F(VolumeMountsTest, AMountPointWithBlanksUtf8AndBackslashesIsFound)
{
    Mount card(Mount::Kind::ext4, 16 * megabyte, folder / "Größe \\040\t東京");
    REQUIRE_MOUNTED(card);
    makeCardForLater(card);
    watcher.startWatching();
    card.mountAgain();
    EXPECT_TRUE(isOffered(card.path()));
    EXPECT_THAT(offers, ElementsAre(Offer{folder / "Größe \\040\t東京", u"Größe \\040\t東京"_s}));
}

TEST_F(VolumeMountsTest, ACardThatWasThereBeforeIsNotOffered)
{
    const Mount before(Mount::Kind::ext4, 16 * megabyte);
    REQUIRE_MOUNTED(before);
    makeCard(before);
    Mount after(Mount::Kind::ext4, 16 * megabyte);
    makeCardForLater(after);
    watcher.startWatching();
    settle(after);
    EXPECT_THAT(offers, ElementsAre(Offer{after.path(), u"mount"_s}));
}

TEST_F(VolumeMountsTest, ACardThatIsEjectedAndReinsertedIsNotOfferedAgain)
{
    Mount card(Mount::Kind::ext4, 16 * megabyte);
    REQUIRE_MOUNTED(card);
    makeCardForLater(card);
    Mount other(Mount::Kind::ext4, 16 * megabyte);
    makeCardForLater(other);
    watcher.startWatching();
    card.mountAgain();
    ASSERT_TRUE(isOffered(card.path()));
    watcher.decline();
    ASSERT_TRUE(card.unmount());
    card.mountAgain();
    settle(other);
    EXPECT_THAT(offers, ElementsAre(Offer{card.path(), u"mount"_s}, Offer{other.path(), u"mount"_s}));
}

TEST_F(VolumeMountsTest, ACardThatIsPulledWhileItIsOnOfferIsWithdrawn)
{
    Mount card(Mount::Kind::ext4, 16 * megabyte);
    REQUIRE_MOUNTED(card);
    makeCardForLater(card);
    watcher.startWatching();
    card.mountAgain();
    ASSERT_TRUE(isOffered(card.path()));
    ASSERT_TRUE(card.unmount());
    EXPECT_TRUE(waitUntil([&] { return !watcher.pendingCandidate(); }));
}

TEST_F(VolumeMountsTest, ACardThatVanishesDuringTheCheckIsNotOffered)
{
    Mount card(Mount::Kind::ext4, 16 * megabyte);
    REQUIRE_MOUNTED(card);
    makeCard(card);
    Mount other(Mount::Kind::ext4, 16 * megabyte);
    makeCardForLater(other);
    watcher.handleMount(FileUrl(card.path()));
    card.detach(); // whatever the check holds open by now
    watcher.startWatching();
    settle(other);
    EXPECT_THAT(offers, ElementsAre(Offer{other.path(), u"mount"_s}));
}

TEST_F(VolumeMountsTest, ABindMountOfACardAndASecondMountOfItAreNoFurtherCards)
{
    Mount card(Mount::Kind::ext4, 16 * megabyte);
    REQUIRE_MOUNTED(card);
    makeCardForLater(card);
    Mount other(Mount::Kind::ext4, 16 * megabyte);
    makeCardForLater(other);
    watcher.startWatching();
    card.mountAgain();
    ASSERT_TRUE(isOffered(card.path()));
    fs::create_directory(folder / "bound");
    fs::create_directory(folder / "whole");
    card.bind(card.path() / "DCIM", folder / "bound");
    card.bind(card.path(), folder / "whole");
    ASSERT_EQ(card.whyNot(), "");
    settle(other);
    EXPECT_THAT(offers, ElementsAre(Offer{card.path(), u"mount"_s}, Offer{other.path(), u"mount"_s}));
    EXPECT_EQ(::umount2((folder / "bound").c_str(), 0), 0);
    EXPECT_EQ(::umount2((folder / "whole").c_str(), 0), 0);
}

TEST_F(VolumeMountsTest, ACardInsideACardIsOneOfItsOwn)
{
    const Mount outer(Mount::Kind::ext4, 16 * megabyte);
    REQUIRE_MOUNTED(outer);
    makeCard(outer);
    Mount inner(Mount::Kind::ext4, 16 * megabyte, outer.path() / "inner");
    REQUIRE_MOUNTED(inner);
    makeCardForLater(inner);
    watcher.startWatching();
    inner.mountAgain();
    EXPECT_TRUE(isOffered(inner.path()));
    EXPECT_TRUE(inner.unmount());
}

TEST_F(VolumeMountsTest, OfTwoCardsAtOnceTheLaterStaysAndTheOtherIsNotForgottenMidway)
{
    Mount first(Mount::Kind::ext4, 16 * megabyte);
    REQUIRE_MOUNTED(first);
    makeCardForLater(first);
    Mount second(Mount::Kind::ext4, 16 * megabyte);
    makeCardForLater(second);
    watcher.startWatching();
    first.mountAgain();
    second.mountAgain();
    ASSERT_TRUE(waitUntil([&] { return offers.size() == 2; }));
    EXPECT_THAT(offers,
                testing::UnorderedElementsAre(Offer{first.path(), u"mount"_s}, Offer{second.path(), u"mount"_s}));
    EXPECT_EQ(watcher.pendingCandidate()->url.path(), offers.back().path);
}

TEST_F(VolumeMountsTest, NothingIsSeenOnceTheWatchIsStoppedAndItCanBeginAgain)
{
    Mount card(Mount::Kind::ext4, 16 * megabyte);
    REQUIRE_MOUNTED(card);
    makeCardForLater(card);
    Mount other(Mount::Kind::ext4, 16 * megabyte);
    makeCardForLater(other);
    watcher.startWatching();
    watcher.stopWatching();
    card.mountAgain();
    watcher.startWatching();
    settle(other);
    EXPECT_THAT(offers, ElementsAre(Offer{other.path(), u"mount"_s}));
}

TEST_F(VolumeMountsTest, ByTheRealDeviceTreeALoopDeviceAndMemoryAreNoCards)
{
    Mount image(Mount::Kind::ext4, 16 * megabyte);
    REQUIRE_MOUNTED(image);
    makeCardForLater(image);
    Mount memory(Mount::Kind::memory, megabyte);
    VolumeWatcher real;
    real.startWatching();
    watcher.startWatching();
    image.mountAgain();
    fs::create_directories(memory.path() / "DCIM");
    real.handleMount(FileUrl(memory.path()));
    ASSERT_TRUE(isOffered(image.path())); // so the change was there to see
    EXPECT_EQ(real.pendingCandidate(), std::nullopt);
}
