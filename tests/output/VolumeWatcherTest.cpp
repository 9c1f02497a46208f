// The watcher on mounts that are only told of: a table and a device tree of the test's own, and folders for cards.
#include <fstream>

#include <gmock/gmock.h>
#include <QtCore/QVariant>
#include <sys/inotify.h>
#include <unistd.h>

#include "output/VolumeWatcher.h"
#include "tests/output/DeviceTree.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

namespace {

// Sees a folder being read, from when the object is made.
class FolderReading
{
public:
    explicit FolderReading(const fs::path &folder) : m_descriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        EXPECT_GE(::inotify_add_watch(m_descriptor, folder.c_str(), IN_CLOSE_NOWRITE), 0);
    }
    ~FolderReading() { ::close(m_descriptor); }
    FolderReading(const FolderReading &) = delete;
    FolderReading &operator=(const FolderReading &) = delete;

    [[nodiscard]] bool isOver() const
    {
        return waitUntil([&] {
            alignas(inotify_event) char events[1024];
            return ::read(m_descriptor, events, sizeof events) > 0;
        });
    }

private:
    const int m_descriptor;
};

class VolumeWatcherTest : public testing::Test
{
protected:
    struct Offer
    {
        FileUrl url;
        QString name;
        std::optional<int> clips;

        friend bool operator==(const Offer &, const Offer &) = default;
    };

    VolumeWatcherTest()
    {
        tree.addCardReader("8:17");
        tree.addCardReader("8:33");
        tree.addDisk("pci0000:00/0000:00:17.0/ata1/host0/block/sda", "8:0", false);
        QObject::connect(&watcher, &VolumeWatcher::pendingCandidateChanged, [this] {
            const auto &candidate = watcher.pendingCandidate();
            offers.push_back(candidate ? Offer{candidate->url, candidate->displayName, candidate->clipCount} : Offer{});
        });
    }

    FileUrl card(const std::string &name = "CARD") const { return {folder / name}; }

    void addClips(int count, const std::string &name = "CARD") const
    {
        for (int i = 0; i < count; ++i) {
            (void)folder.write(name + "/DCIM/100/C" + std::to_string(i) + ".MP4");
        }
    }

    // Writes the line and tells of it, as a change of the table does.
    void mount(const FileUrl &url, const std::string &device = "8:17", const std::string &type = "exfat")
    {
        std::ofstream(table.path(), std::ios::app)
            << "80 27 " << device << " / " << url.path().string() << " rw - " << type << " source rw\n";
        watcher.handleMount(url);
    }

    void unmountAll() const { std::ofstream(table.path(), std::ios::trunc); }

    [[nodiscard]] bool isCounted() const
    {
        return waitUntil([&] { return watcher.pendingCandidate() && watcher.pendingCandidate()->clipCount; });
    }

    // Returns once everything that was mounted so far has been looked at, whatever came of it.
    void settle()
    {
        const FileUrl last(folder / ("settled-" + std::to_string(m_settled++)));
        fs::create_directories(last.path() / "DCIM");
        mount(FileUrl(last), "8:33");
        EXPECT_TRUE(waitUntil([&] { return watcher.pendingCandidate() && watcher.pendingCandidate()->url == last; }));
        EXPECT_TRUE(isCounted());
        watcher.decline();
    }

    const TempFolder folder;
    const DeviceTree tree;
    const FileUrl table{folder.write("mountinfo")};
    std::vector<Offer> offers;
    VolumeWatcher watcher{{.mountTable = table.path(), .deviceTree = tree.path(), .byLabel = tree.byLabel()}};

private:
    int m_settled = 0;
};

} // namespace

TEST_F(VolumeWatcherTest, ACardIsOnOfferBeforeItIsCounted)
{
    addClips(3);
    mount(card());
    ASSERT_TRUE(isCounted());
    EXPECT_THAT(offers, ElementsAre(Offer{card(), u"CARD"_s, {}}, Offer{card(), u"CARD"_s, 3}));
    EXPECT_FALSE(watcher.pendingCandidate()->id.isNull());
    EXPECT_EQ(watcher.property("hasCandidate"), true);
    EXPECT_EQ(watcher.property("displayName"), u"CARD"_s);
    EXPECT_EQ(watcher.property("isCounted"), true);
    EXPECT_EQ(watcher.property("clipCount"), 3);
}

TEST_F(VolumeWatcherTest, ACardWithADcimFolderAndNoClipsIsOfferedAndCountsNone)
{
    fs::create_directories(card().path() / "DCIM");
    mount(card());
    ASSERT_TRUE(isCounted());
    EXPECT_EQ(watcher.pendingCandidate()->clipCount, 0);
}

TEST_F(VolumeWatcherTest, ANetworkShareAndAnInternalDiskAreIgnored)
{
    addClips(1, "share");
    addClips(1, "disk");
    mount(card("share"), "0:51", "nfs4");
    mount(card("disk"), "8:0", "ext4");
    EXPECT_THAT(offers, IsEmpty());
    settle();
    EXPECT_THAT(offers, SizeIs(3)); // of the card that settle() brings
}

TEST_F(VolumeWatcherTest, AFolderThatNothingIsMountedOnIsIgnored)
{
    addClips(1);
    watcher.handleMount(card());
    settle();
    EXPECT_THAT(offers, SizeIs(3));
}

TEST_F(VolumeWatcherTest, ABackupDiskIsIgnoredWhateverElseItHolds)
{
    addClips(1, "folder");
    fs::create_directories(card("folder").path() / "Backups.backupdb");
    addClips(1, "file");
    (void)folder.write("file/Backups.backupdb");
    mount(card("folder"));
    mount(card("file"));
    settle();
    EXPECT_THAT(offers, SizeIs(3));
}

TEST_F(VolumeWatcherTest, ADiskWithoutFootageIsIgnored)
{
    (void)folder.write("CARD/letters/a.txt");
    (void)folder.write("CARD/._C0001.MP4");
    mount(card());
    settle();
    EXPECT_THAT(offers, SizeIs(3));
}

TEST_F(VolumeWatcherTest, APathIsOfferedOncePerRunWhateverWasAnswered)
{
    addClips(1);
    mount(card());
    ASSERT_TRUE(isCounted());
    watcher.decline();
    unmountAll();
    mount(card());
    mount(FileUrl(card().path() / "."));
    mount(FileUrl(card().path().string() + "//"));
    settle();
    EXPECT_THAT(offers, SizeIs(6)); // offered, counted, declined; and the same of settle()'s
}

TEST_F(VolumeWatcherTest, APathThatWasRejectedStaysSo)
{
    fs::create_directories(card().path());
    const FolderReading reading(card().path());
    mount(card());
    ASSERT_TRUE(reading.isOver());
    settle();
    addClips(1);
    mount(card());
    settle();
    EXPECT_THAT(offers, SizeIs(6));
}

TEST_F(VolumeWatcherTest, ACountThatArrivesAfterTheAnswerChangesNothing)
{
    addClips(500);
    const auto answer = QObject::connect(&watcher, &VolumeWatcher::pendingCandidateChanged, [this] {
        if (watcher.pendingCandidate()) {
            watcher.decline();
        }
    });
    mount(card());
    ASSERT_TRUE(waitUntil([&] { return offers.size() == 2; }));
    QObject::disconnect(answer);
    settle();
    EXPECT_THAT(offers, SizeIs(5));
    EXPECT_EQ(offers[2].clips, std::nullopt); // the next card's, with nothing of the one before
}

TEST_F(VolumeWatcherTest, TheLatestCardReplacesTheOneOnOfferAndKeepsItsOwnCount)
{
    addClips(3);
    mount(card());
    ASSERT_TRUE(isCounted());
    addClips(1, "SECOND");
    mount(card("SECOND"), "8:33");
    const Offer second{card("SECOND"), u"SECOND"_s, 1};
    ASSERT_TRUE(waitUntil([&] { return offers.back() == second; }));
    EXPECT_THAT(offers, ElementsAre(Offer{card(), u"CARD"_s, {}}, Offer{card(), u"CARD"_s, 3},
                                    Offer{card("SECOND"), u"SECOND"_s, {}}, second));
}

TEST_F(VolumeWatcherTest, ACountThatArrivesAfterAnotherCardTookTheOffersPlaceChangesNothing)
{
    addClips(500);
    addClips(1, "SECOND");
    const auto replacing = QObject::connect(&watcher, &VolumeWatcher::pendingCandidateChanged, [this] {
        if (offers.size() == 1) {
            mount(card("SECOND"), "8:33"); // as the first is offered, and before it is counted
        }
    });
    mount(card());
    const Offer second{card("SECOND"), u"SECOND"_s, 1};
    ASSERT_TRUE(waitUntil([&] { return !offers.empty() && offers.back() == second; }));
    QObject::disconnect(replacing);
    settle();
    const Offer none;
    for (std::size_t i = 0; i + 1 < offers.size(); ++i) {
        EXPECT_FALSE(offers[i].url == card("SECOND") && offers[i + 1].url == card());
    }
    EXPECT_EQ(offers.back(), none);
}

TEST_F(VolumeWatcherTest, ACardThatIsPulledWhileItIsCheckedIsNotOffered)
{
    addClips(1);
    mount(card());
    unmountAll();
    settle();
    EXPECT_THAT(offers, SizeIs(3));
}

TEST_F(VolumeWatcherTest, ACardIsNamedByItsLabelAndOtherwiseByItsFolder)
{
    tree.setLabel("Villa\\x20\\x26\\x20S\xc3\xb6hne", "sd8:17p1");
    addClips(1);
    mount(card());
    ASSERT_TRUE(isCounted());
    EXPECT_EQ(watcher.pendingCandidate()->displayName, u"Villa & Söhne"_s);
    addClips(1, "Größe 1");
    std::ofstream(table.path(), std::ios::app)
        << "81 27 8:33 / " << (folder / "Größe").string() << "\\0401 rw - exfat source rw\n";
    watcher.handleMount(card("Größe 1"));
    ASSERT_TRUE(waitUntil([&] { return watcher.pendingCandidate()->displayName == u"Größe 1"_s; }));
}

TEST_F(VolumeWatcherTest, AcceptingAnnouncesTheCardAndEndsTheOffer)
{
    std::vector<Offer> accepted;
    QObject::connect(&watcher, &VolumeWatcher::accepted, [&](const FileUrl &url, const QString &name) {
        accepted.push_back({url, name, {}});
    });
    watcher.accept();
    EXPECT_THAT(accepted, IsEmpty());
    addClips(1);
    mount(card());
    ASSERT_TRUE(isCounted());
    watcher.accept();
    EXPECT_THAT(accepted, ElementsAre(Offer{card(), u"CARD"_s, {}}));
    EXPECT_EQ(watcher.pendingCandidate(), std::nullopt);
    watcher.accept();
    EXPECT_THAT(accepted, SizeIs(1));
}

TEST_F(VolumeWatcherTest, StoppingWithdrawsTheOfferAndForgetsWhatIsBeingChecked)
{
    addClips(1);
    mount(card());
    ASSERT_TRUE(isCounted());
    addClips(1, "SECOND");
    mount(card("SECOND"), "8:33");
    watcher.stopWatching();
    EXPECT_EQ(watcher.pendingCandidate(), std::nullopt);
    settle();
    for (const Offer &offer : offers) {
        EXPECT_NE(offer.url, card("SECOND"));
    }
}

TEST_F(VolumeWatcherTest, WithoutAMountTableItWatchesNothing)
{
    VolumeWatcher blind({.mountTable = "/no/such/table", .deviceTree = "/no/such/tree", .byLabel = "/no/such/labels"});
    blind.startWatching();
    blind.startWatching();
    blind.handleMount(card());
    EXPECT_EQ(blind.pendingCandidate(), std::nullopt);
    blind.stopWatching();
}
