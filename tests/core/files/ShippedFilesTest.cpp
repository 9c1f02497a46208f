#include "core/files/ShippedFiles.h"

#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;

namespace fs = std::filesystem;

TEST(ShippedFiles, OfAnInstalledProgramLieInItsPrefix)
{
    const TempFolder prefix;
    fs::create_directories(prefix / "bin");
    fs::create_directories(prefix / "share/larkspan");
    EXPECT_EQ(shippedFilesOf(prefix / "bin"), prefix / "share/larkspan");
}

TEST(ShippedFiles, OfAProgramDeepInABuildFolderLieAtItsTop)
{
    const TempFolder build;
    fs::create_directories(build / "tests/shell");
    fs::create_directories(build / "share/larkspan");
    EXPECT_EQ(shippedFilesOf(build / "tests/shell"), build / "share/larkspan");
}

TEST(ShippedFiles, AreTheNearestOnes)
{
    const TempFolder outer;
    fs::create_directories(outer / "prefix/bin");
    fs::create_directories(outer / "share/larkspan");
    fs::create_directories(outer / "prefix/share/larkspan");
    EXPECT_EQ(shippedFilesOf(outer / "prefix/bin"), outer / "prefix/share/larkspan");
}

TEST(ShippedFiles, WhereThereAreNoneAreSaidToBeWhereTheyAreMissing)
{
    const TempFolder prefix;
    fs::create_directories(prefix / "bin");
    EXPECT_EQ(shippedFilesOf(prefix / "bin"), prefix / "share/larkspan");
}

TEST(ShippedFiles, AreThereForThisVeryProgram)
{
    EXPECT_TRUE(fs::exists(shippedFiles() / "intro_chime.wav"));
    EXPECT_TRUE(fs::exists(shippedFiles() / "models" / "objects.onnx"));
    EXPECT_TRUE(fs::exists(shippedFiles() / "models" / "rooms.head"));
}
