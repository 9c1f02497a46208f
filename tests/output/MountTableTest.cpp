#include <gmock/gmock.h>

#include "output/MountTable.h"

using namespace larkspan;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

MountEntry mount(int id, std::string device, std::string mountPoint)
{
    return {.id = id, .device = std::move(device), .mountPoint = std::move(mountPoint), .type = "exfat", .source = ""};
}

const MountEntry disk = mount(27, "259:2", "/");
const MountEntry card = mount(80, "8:17", "/media/ann/CARD");

} // namespace

TEST(MountTable, ALineWithTagsAndOneWithoutAreRead)
{
    EXPECT_THAT(parseMountTable(
                    "36 35 98:0 /mnt1 /mnt/parent rw,noatime shared:1 master:2 - ext3 /dev/root rw,errors=continue\n"
                    "22 27 0:21 / /proc rw,relatime - proc proc rw\n"),
                ElementsAre(MountEntry{36, "98:0", "/mnt/parent", "ext3", "/dev/root"},
                            MountEntry{22, "0:21", "/proc", "proc", "proc"}));
}

TEST(MountTable, BlanksTabsLineEndsAndBackslashesOfANameAreUnescaped)
{
    EXPECT_THAT(
        parseMountTable("81 27 8:17 / /media/ann/My\\040Card\\011\\012\\134040 rw - vfat /dev/my\\040card rw\n"),
        ElementsAre(MountEntry{81, "8:17", "/media/ann/My Card\t\n\\040", "vfat", "/dev/my card"}));
}

TEST(MountTable, AnEscapedLetterAndUtf8AreReadAsTheirBytes)
{
    EXPECT_THAT(parseMountTable("81 27 8:17 / /media/ann/Größe\\040東京\\303\\251 rw - exfat /dev/sdb1 rw\n"),
                ElementsAre(MountEntry{81, "8:17", "/media/ann/Größe 東京é", "exfat", "/dev/sdb1"}));
}

TEST(MountTable, ABackslashWithoutThreeDigitsStandsForItself)
{
    EXPECT_EQ(parseMountTable("81 27 8:17 / /a\\04 rw - vfat /dev/sdb1 rw").front().mountPoint, "/a\\04");
    EXPECT_EQ(parseMountTable("81 27 8:17 / /a\\089 rw - vfat /dev/sdb1 rw").front().mountPoint, "/a\\089");
    EXPECT_EQ(parseMountTable("81 27 8:17 / /a\\ rw - vfat /dev/sdb1 rw").front().mountPoint, "/a\\");
}

TEST(MountTable, AnythingElseIsLeftOut)
{
    for (const char *text : {"", "\n\n", " ", "-", "36", "36 35 98:0 / /mnt rw",
                             "36 35 98:0 / /mnt rw shared:1 ext3 x rw", "36 35 98:0 / /mnt rw - ext3",
                             "x 35 98:0 / /mnt rw - ext3 /dev/root rw", "3x 35 98:0 / /mnt rw - ext3 /dev/root rw",
                             "36 35 98:0 / mnt rw - ext3 /dev/root rw", "36 35 98 / /mnt rw - ext3 /dev/root rw",
                             "36 35 :0 / /mnt rw - ext3 /dev/root rw", "36 35 ../98:0 / /mnt rw - ext3 /dev/root rw",
                             "99999999999999999999 35 98:0 / /mnt rw - ext3 /dev/root rw"}) {
        EXPECT_THAT(parseMountTable(text), IsEmpty()) << text;
    }
}

TEST(MountTable, AVolumeThatCameIsNew)
{
    EXPECT_THAT(newVolumes(std::vector{disk}, std::vector{disk, card}), ElementsAre(card));
    EXPECT_THAT(newVolumes({}, std::vector{disk, card}), ElementsAre(disk, card));
}

TEST(MountTable, NothingIsNewWhenAVolumeGoesOrNothingChanges)
{
    EXPECT_THAT(newVolumes(std::vector{disk, card}, std::vector{disk}), IsEmpty());
    EXPECT_THAT(newVolumes(std::vector{disk, card}, std::vector{card, disk}), IsEmpty());
    EXPECT_THAT(newVolumes(std::vector{disk, card}, {}), IsEmpty());
}

TEST(MountTable, TwoCardsAtOnceAreBothNew)
{
    const MountEntry second = mount(81, "8:33", "/media/ann/CARD1");
    EXPECT_THAT(newVolumes(std::vector{disk}, std::vector{disk, card, second}), ElementsAre(card, second));
}

TEST(MountTable, ABindMountOfACardThatIsMountedIsNotNew)
{
    EXPECT_THAT(newVolumes(std::vector{disk, card}, std::vector{disk, card, mount(82, "8:17", "/srv/card")}),
                IsEmpty());
    EXPECT_THAT(newVolumes(std::vector{disk, card}, std::vector{mount(82, "8:17", "/srv/card"), disk, card}),
                IsEmpty());
}

TEST(MountTable, ACardThatIsMountedTwiceAtOnceIsNewOnce)
{
    EXPECT_THAT(newVolumes(std::vector{disk}, std::vector{disk, card, mount(82, "8:17", "/srv/card")}),
                ElementsAre(card));
}

TEST(MountTable, AnotherCardAtTheSamePlaceIsNewThoughItsMountHasTheSameNumber)
{
    const MountEntry other = mount(card.id, "8:33", card.mountPoint);
    EXPECT_THAT(newVolumes(std::vector{disk, card}, std::vector{disk, other}), ElementsAre(other));
}

TEST(MountTable, ACardThatCameBackElsewhereIsNew)
{
    const MountEntry elsewhere = mount(card.id, card.device, "/media/ann/CARD1");
    EXPECT_THAT(newVolumes(std::vector{disk, card}, std::vector{disk, elsewhere}), ElementsAre(elsewhere));
}

TEST(MountTable, AMountInsideACardIsAVolumeOfItsOwn)
{
    const MountEntry inside = mount(82, "8:33", card.mountPoint / "inside");
    EXPECT_THAT(newVolumes(std::vector{disk, card}, std::vector{disk, card, inside}), ElementsAre(inside));
}

TEST(MountTable, OfMountsOnOnePlaceOnlyTheLastIsReached)
{
    const MountEntry waiting = mount(79, "0:51", card.mountPoint); // as an automount leaves it beneath
    EXPECT_THAT(newVolumes(std::vector{disk}, std::vector{disk, waiting, card}), ElementsAre(card));
    const std::vector table{disk, waiting, card};
    EXPECT_EQ(mountAt(table, card.mountPoint), &table[2]);
    EXPECT_EQ(mountAt(table, "/media"), nullptr);
}

TEST(MountTable, TheKernelsOwnTableIsReadAndHoldsTheRoot)
{
    const MountTable table("/proc/self/mountinfo");
    ASSERT_GE(table.descriptor(), 0);
    const std::vector<MountEntry> mounts = table.read();
    EXPECT_NE(mountAt(mounts, "/"), nullptr);
    EXPECT_EQ(table.read(), mounts);
}

TEST(MountTable, ATableThatIsNotThereIsEmpty)
{
    const MountTable table("/proc/self/no-such-table");
    EXPECT_LT(table.descriptor(), 0);
    EXPECT_THAT(table.read(), IsEmpty());
}
