// The volumes that count as cards, over the device trees of real machines.
#include <gmock/gmock.h>

#include "output/VolumeDevice.h"
#include "tests/output/DeviceTree.h"

using namespace larkspan;
using namespace larkspan::test;
using testing::Optional;

namespace {

class VolumeDeviceTest : public testing::Test
{
protected:
    // A line of the mount table; its device, if the tree knows one.
    std::optional<VolumeDevice> deviceOf(const std::string &number, const std::string &type = "exfat",
                                         const std::string &source = "") const
    {
        return VolumeDevice::of({.id = 80, .device = number, .mountPoint = "/mnt", .type = type, .source = source},
                                tree.path());
    }

    [[nodiscard]] bool isCard(const std::string &number) const
    {
        const auto device = deviceOf(number);
        return device && device->isRemovable();
    }

    // Adds a disk on a port of the machine's own USB controller.
    void addUsbDisk(const std::string &place, const std::string &number, bool removable) const
    {
        tree.setSubsystem("pci0000:00", "pci");
        tree.setSubsystem("pci0000:00/0000:00:14.0", "pci");
        tree.setSubsystem("pci0000:00/0000:00:14.0/usb1", "usb");
        tree.setSubsystem("pci0000:00/0000:00:14.0/usb1/1-2", "usb");
        tree.setSubsystem(usb + "host4", "scsi");
        tree.addDisk(place, number, removable);
        tree.setSubsystem(place, "block");
    }

    const std::string usb = "pci0000:00/0000:00:14.0/usb1/1-2/1-2:1.0/";
    const DeviceTree tree;
};

} // namespace

TEST_F(VolumeDeviceTest, AUsbStickIsACardByItsPartitionAndWhole)
{
    addUsbDisk(usb + "host4/target4:0:0/4:0:0:0/block/sdb", "8:16", true);
    tree.addPartition(usb + "host4/target4:0:0/4:0:0:0/block/sdb/sdb1", "8:17");
    EXPECT_TRUE(isCard("8:17"));
    EXPECT_TRUE(isCard("8:16"));
    EXPECT_EQ(deviceOf("8:17")->name(), "sdb1");
}

TEST_F(VolumeDeviceTest, EachSlotOfAReaderOnUsbHoldsACard)
{
    addUsbDisk(usb + "host4/target4:0:0/4:0:0:0/block/sdb", "8:16", true);
    tree.addDisk(usb + "host4/target4:0:0/4:0:0:1/block/sdc", "8:32", true);
    tree.addPartition(usb + "host4/target4:0:0/4:0:0:1/block/sdc/sdc1", "8:33");
    EXPECT_TRUE(isCard("8:33"));
}

TEST_F(VolumeDeviceTest, AnSsdOnUsbIsACardThoughItsMediumStaysInIt)
{
    addUsbDisk(usb + "host4/target4:0:0/4:0:0:0/block/sdb", "8:16", false);
    tree.addPartition(usb + "host4/target4:0:0/4:0:0:0/block/sdb/sdb1", "8:17");
    EXPECT_TRUE(isCard("8:17"));
}

TEST_F(VolumeDeviceTest, AnSdCardInABuiltInReaderIsACard)
{
    const std::string disk =
        "pci0000:00/0000:00:1d.0/0000:3b:00.0/rtsx_pci_sdmmc.0/mmc_host/mmc0/mmc0:aaaa/block/mmcblk0";
    tree.setSubsystem("pci0000:00/0000:00:1d.0/0000:3b:00.0", "pci");
    tree.setSubsystem("pci0000:00/0000:00:1d.0/0000:3b:00.0/rtsx_pci_sdmmc.0/mmc_host/mmc0/mmc0:aaaa", "mmc");
    tree.addDisk(disk, "179:0", false);
    tree.setType(disk, "SD");
    tree.addPartition(disk + "/mmcblk0p1", "179:1");
    EXPECT_TRUE(isCard("179:1"));
}

TEST_F(VolumeDeviceTest, SolderedFlashIsNoCard)
{
    const std::string disk = "platform/fe330000.mmc/mmc_host/mmc1/mmc1:0001/block/mmcblk1";
    tree.setSubsystem("platform/fe330000.mmc/mmc_host/mmc1/mmc1:0001", "mmc");
    tree.addDisk(disk, "179:8", false);
    tree.setType(disk, "MMC");
    tree.addPartition(disk + "/mmcblk1p1", "179:9");
    EXPECT_FALSE(isCard("179:9"));
}

TEST_F(VolumeDeviceTest, AnInternalNvmeDiskIsNoCard)
{
    const std::string controller = "pci0000:00/0000:00:06.0/0000:01:00.0/nvme/nvme0";
    tree.setSubsystem("pci0000:00/0000:00:06.0", "pci");
    tree.setSubsystem("pci0000:00/0000:00:06.0/0000:01:00.0", "pci");
    tree.write("pci0000:00/0000:00:06.0/0000:01:00.0/removable", "fixed\n");
    tree.setSubsystem(controller, "nvme");
    tree.addDisk(controller + "/nvme0n1", "259:0", false);
    tree.addPartition(controller + "/nvme0n1/nvme0n1p2", "259:2");
    EXPECT_FALSE(isCard("259:2"));
}

TEST_F(VolumeDeviceTest, AnNvmeCardBehindAThunderboltPortIsACard)
{
    const std::string controller = "pci0000:00/0000:00:07.0/0000:04:00.0/0000:05:01.0/0000:06:00.0/nvme/nvme1";
    tree.setSubsystem("pci0000:00/0000:00:07.0", "pci");
    tree.setSubsystem("pci0000:00/0000:00:07.0/0000:04:00.0", "pci");
    tree.write("pci0000:00/0000:00:07.0/0000:04:00.0/removable", "removable\n");
    tree.setSubsystem(controller, "nvme");
    tree.addDisk(controller + "/nvme1n1", "259:5", false);
    tree.addPartition(controller + "/nvme1n1/nvme1n1p1", "259:6");
    EXPECT_TRUE(isCard("259:6"));
}

TEST_F(VolumeDeviceTest, AnNvmeDiskOfSeveralPathsIsWhatItsControllersAre)
{
    const auto addDisk = [&](const std::string &number, const std::string &bridge, const std::string &digit,
                             const std::string &removable) {
        const std::string controller = "pci0000:00/" + bridge + "/nvme/nvme" + digit;
        tree.setSubsystem("pci0000:00/" + bridge, "pci");
        tree.write("pci0000:00/" + bridge + "/removable", removable);
        tree.setSubsystem(controller, "nvme");
        const std::string subsystem = "virtual/nvme-subsystem/nvme-subsys" + digit;
        tree.setSubsystem(subsystem, "nvme-subsystem");
        tree.addDisk(subsystem + "/nvme" + digit + "n1", number, false);
        std::filesystem::create_directory_symlink("../../../" + controller,
                                                  tree.path() / "devices" / subsystem / ("nvme" + digit));
    };
    addDisk("259:0", "0000:00:06.0", "0", "fixed\n");
    addDisk("259:5", "0000:00:07.0", "1", "removable\n");
    EXPECT_FALSE(isCard("259:0"));
    EXPECT_TRUE(isCard("259:5"));
}

TEST_F(VolumeDeviceTest, AnInternalSataDiskIsNoCard)
{
    const std::string disk = "pci0000:00/0000:00:17.0/ata1/host0/target0:0:0/0:0:0:0/block/sda";
    tree.setSubsystem("pci0000:00/0000:00:17.0", "pci");
    tree.addDisk(disk, "8:0", false);
    tree.addPartition(disk + "/sda2", "8:2");
    EXPECT_FALSE(isCard("8:2"));
}

TEST_F(VolumeDeviceTest, TheDisksOfVirtualMachinesAndOverANetworkAreNoCards)
{
    tree.setSubsystem("pci0000:00/0000:00:02.0/virtio1", "virtio");
    tree.addDisk("pci0000:00/0000:00:02.0/virtio1/block/vda", "254:0", false);
    tree.addDisk("platform/host6/session1/target6:0:0/6:0:0:0/block/sdd", "8:48", false);
    tree.addDisk("virtual/block/nbd0", "43:0", false);
    tree.addDisk("virtual/block/zram0", "252:0", false);
    for (const char *number : {"254:0", "8:48", "43:0", "252:0"}) {
        EXPECT_FALSE(isCard(number)) << number;
    }
}

TEST_F(VolumeDeviceTest, AFileInALoopDeviceIsNoCard)
{
    tree.addDisk("virtual/block/loop0", "7:0", false);
    tree.write("virtual/block/loop0/loop/backing_file", "/home/ann/card.img\n");
    EXPECT_FALSE(isCard("7:0"));
}

TEST_F(VolumeDeviceTest, FireWireDisksAndMemorySticksAreCards)
{
    tree.setSubsystem("pci0000:00/0000:05:00.0/fw1/fw1.0", "firewire");
    tree.addDisk("pci0000:00/0000:05:00.0/fw1/fw1.0/host7/target7:0:0/7:0:0:0/block/sde", "8:64", false);
    tree.setSubsystem("pci0000:00/0000:02:00.1/rtsx_pci_ms.1/memstick_host/memstick0/memstick0", "memstick");
    tree.addDisk("pci0000:00/0000:02:00.1/rtsx_pci_ms.1/memstick_host/memstick0/memstick0/block/mspblk0", "253:9",
                 false);
    EXPECT_TRUE(isCard("8:64"));
    EXPECT_TRUE(isCard("253:9"));
}

TEST_F(VolumeDeviceTest, AnEncryptedStickIsACardAndAnEncryptedInternalDiskIsNone)
{
    addUsbDisk(usb + "host4/target4:0:0/4:0:0:0/block/sdb", "8:16", true);
    tree.addPartition(usb + "host4/target4:0:0/4:0:0:0/block/sdb/sdb1", "8:17");
    tree.addDisk("virtual/block/dm-0", "253:0", false);
    tree.addSlave("virtual/block/dm-0", usb + "host4/target4:0:0/4:0:0:0/block/sdb/sdb1");
    EXPECT_TRUE(isCard("253:0"));

    tree.addDisk("pci0000:00/0000:01:00.0/nvme/nvme0/nvme0n1", "259:0", false);
    tree.addPartition("pci0000:00/0000:01:00.0/nvme/nvme0/nvme0n1/nvme0n1p3", "259:3");
    tree.addDisk("virtual/block/dm-1", "253:1", false);
    tree.addSlave("virtual/block/dm-1", "pci0000:00/0000:01:00.0/nvme/nvme0/nvme0n1/nvme0n1p3");
    EXPECT_FALSE(isCard("253:1"));

    tree.addSlave("virtual/block/dm-0", "virtual/block/dm-1"); // a volume group over both
    EXPECT_FALSE(isCard("253:0"));
}

TEST_F(VolumeDeviceTest, DevicesMadeOfEachOtherEndTheSearch)
{
    tree.addDisk("virtual/block/dm-0", "253:0", true);
    tree.addDisk("virtual/block/dm-1", "253:1", true);
    tree.addSlave("virtual/block/dm-0", "virtual/block/dm-1");
    tree.addSlave("virtual/block/dm-1", "virtual/block/dm-0");
    EXPECT_FALSE(isCard("253:0"));
}

TEST_F(VolumeDeviceTest, NetworkAndPseudoFileSystemsHaveNoDevice)
{
    addUsbDisk(usb + "host4/target4:0:0/4:0:0:0/block/sdb", "8:16", true);
    EXPECT_FALSE(deviceOf("0:51", "nfs4", "nas:/shoots"));
    EXPECT_FALSE(deviceOf("0:52", "cifs", "//nas/shoots"));
    EXPECT_FALSE(deviceOf("0:53", "fuse.sshfs", "ann@nas:/shoots"));
    EXPECT_FALSE(deviceOf("0:54", "overlay", "overlay"));
    EXPECT_FALSE(deviceOf("0:55", "tmpfs", "/dev/sdb")); // its source is whatever somebody called it
    EXPECT_FALSE(deviceOf("0:56", "fuse.gvfsd-fuse", "gvfsd-fuse"));
    EXPECT_FALSE(deviceOf("8:99", "exfat"));
}

TEST_F(VolumeDeviceTest, ABtrfsStickIsFoundByItsSourceSinceItHasANumberOfItsOwn)
{
    addUsbDisk(usb + "host4/target4:0:0/4:0:0:0/block/sdb", "8:16", true);
    tree.addPartition(usb + "host4/target4:0:0/4:0:0:0/block/sdb/sdb1", "8:17");
    tree.addDisk("virtual/block/dm-0", "253:0", false);
    tree.write("virtual/block/dm-0/dm/name", "luks-4711\n");
    tree.addSlave("virtual/block/dm-0", usb + "host4/target4:0:0/4:0:0:0/block/sdb/sdb1");
    for (const char *source : {"/dev/sdb1", "/dev/mapper/luks-4711"}) {
        const auto device = deviceOf("0:60", "btrfs", source);
        EXPECT_TRUE(device && device->isRemovable()) << source;
    }
    EXPECT_FALSE(deviceOf("0:60", "btrfs", "/dev/mapper/luks-0815"));
    EXPECT_FALSE(deviceOf("0:60", "btrfs", "somewhere"));
}

TEST_F(VolumeDeviceTest, ATreeThatIsNotThereKnowsNoDevice)
{
    EXPECT_FALSE(VolumeDevice::of({.id = 1, .device = "8:17", .mountPoint = "/", .type = "exfat", .source = ""},
                                  "/no/such/tree"));
}

TEST_F(VolumeDeviceTest, ALabelIsReadWithItsBlanksAndItsUtf8)
{
    addUsbDisk(usb + "host4/target4:0:0/4:0:0:0/block/sdb", "8:16", true);
    tree.addPartition(usb + "host4/target4:0:0/4:0:0:0/block/sdb/sdb1", "8:17");
    tree.setLabel("OTHER", "sdc1");
    const VolumeDevice device = *deviceOf("8:17");
    EXPECT_EQ(device.label(tree.byLabel()), std::nullopt);
    tree.setLabel("Größe\\x20東京\\x2fA\\x5c", "sdb1");
    EXPECT_THAT(device.label(tree.byLabel()), Optional(std::string("Größe 東京/A\\")));
    EXPECT_EQ(device.label(tree.path() / "no-such-folder"), std::nullopt);
}

TEST_F(VolumeDeviceTest, WhatIsNoEscapeInALabelStandsForItself)
{
    tree.addDisk("virtual/block/loop0", "7:0", false);
    tree.setLabel("A\\x2\\xZZ\\x", "loop0");
    EXPECT_THAT(deviceOf("7:0")->label(tree.byLabel()), Optional(std::string("A\\x2\\xZZ\\x")));
}
