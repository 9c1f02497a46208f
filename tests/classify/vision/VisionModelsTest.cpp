#include "classify/vision/VisionModels.h"

#include <fstream>

#include <gmock/gmock.h>

#include "classify/vision/ModelsOnDemand.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using testing::IsEmpty;
using testing::Not;

namespace {

const std::filesystem::path Models = LARKSPAN_MODELS;

// The program's models, to be spoilt.
void copyModels(const test::TempFolder &folder)
{
    for (const auto *name : {"objects.onnx", "scene.onnx", "pose.onnx", "face.onnx", "rooms.head"}) {
        std::filesystem::copy_file(Models / name, folder / name);
    }
}

ModelError loadError(const test::TempFolder &folder)
{
    const auto models = VisionModels::load(folder.path());
    return models ? throw std::runtime_error("the models were loaded") : models.error();
}

} // namespace

TEST(VisionModels, AreFoundByAProgramThatIsNotInstalled)
{
    EXPECT_TRUE(VisionModels::load());
}

TEST(VisionModels, AFileThatIsMissingIsFoundWithoutReadingAny)
{
    const test::TempFolder folder;
    copyModels(folder);
    EXPECT_EQ(VisionModels::findMissing(folder.path()), std::nullopt);
    std::filesystem::remove(folder / "rooms.head");
    std::filesystem::create_directory(folder / "rooms.head");
    const auto missing = VisionModels::findMissing(folder.path());
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->reason, ModelError::Reason::Missing);
    EXPECT_EQ(missing->file, folder / "rooms.head");
}

TEST(ModelsOnDemand, AreReadOnceForAllWhoAskWhileTheyAreKept)
{
    int times = 0;
    ModelsOnDemand models([&times] {
        ++times;
        return VisionModels::load(Models);
    });
    EXPECT_EQ(times, 0);
    const auto first = models.get();
    ASSERT_TRUE(first);
    EXPECT_EQ(models.get(), first);
    EXPECT_EQ(times, 1);
}

TEST(ModelsOnDemand, AreFreedOnceTheyAreLetGoAndNobodyUsesThem)
{
    int times = 0;
    ModelsOnDemand models([&times] {
        ++times;
        return VisionModels::load(Models);
    });
    auto used = models.get();
    ASSERT_TRUE(used);
    const std::weak_ptr<const VisionModels> memory = *used;
    models.letGo();
    EXPECT_FALSE(memory.expired()) << "a sort still uses them";
    EXPECT_EQ(models.get(), used) << "and the next one shares them";
    EXPECT_EQ(times, 1);

    used = nullptr;
    EXPECT_FALSE(memory.expired());
    models.letGo();
    EXPECT_TRUE(memory.expired());
    EXPECT_TRUE(models.get());
    EXPECT_EQ(times, 2);
}

TEST(ModelsOnDemand, AreLookedForAgainAfterAnError)
{
    const test::TempFolder folder;
    ModelsOnDemand models([&folder] { return VisionModels::load(folder.path()); });
    EXPECT_FALSE(models.get());
    copyModels(folder);
    EXPECT_TRUE(models.get());
}

TEST(VisionModels, AMissingFileIsNamed)
{
    const test::TempFolder folder;
    copyModels(folder);
    std::filesystem::remove(folder / "pose.onnx");
    const auto error = loadError(folder);
    EXPECT_EQ(error.reason, ModelError::Reason::Missing);
    EXPECT_EQ(error.file, folder / "pose.onnx");
    EXPECT_THAT(error.detail, Not(IsEmpty()));
}

TEST(VisionModels, AMissingADamagedAndANewerHeadForRoomsAreToldApart)
{
    const test::TempFolder folder;
    copyModels(folder);
    const auto head = folder / "rooms.head";
    {
        std::fstream stream(head, std::ios::in | std::ios::out | std::ios::binary);
        stream.seekp(8).put(4); // its version
    }
    EXPECT_EQ(loadError(folder).reason, ModelError::Reason::OtherModel);
    folder.write("rooms.head", "LKROOMS\n\3");
    EXPECT_EQ(loadError(folder).reason, ModelError::Reason::Broken);
    std::filesystem::remove(head);
    EXPECT_EQ(loadError(folder).reason, ModelError::Reason::Missing);
    EXPECT_EQ(loadError(folder).file, head);
}

TEST(VisionModels, ASceneNetworkThatIsMissingDamagedOrAnotherIsToldApart)
{
    const test::TempFolder folder;
    copyModels(folder);
    const auto scene = folder / "scene.onnx";
    std::filesystem::copy_file(Models / "objects.onnx", scene, std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(loadError(folder).reason, ModelError::Reason::OtherModel);
    std::filesystem::resize_file(scene, 1000);
    EXPECT_EQ(loadError(folder).reason, ModelError::Reason::Broken);
    std::filesystem::remove(scene);
    EXPECT_EQ(loadError(folder).reason, ModelError::Reason::Missing);
    EXPECT_EQ(loadError(folder).file, scene);
}

TEST(VisionModels, AFolderInPlaceOfAFileIsNoModel)
{
    const test::TempFolder folder;
    copyModels(folder);
    std::filesystem::remove(folder / "face.onnx");
    std::filesystem::create_directory(folder / "face.onnx");
    EXPECT_EQ(loadError(folder).reason, ModelError::Reason::Missing);
}

TEST(VisionModels, ATruncatedFileIsBrokenWhereverItIsCut)
{
    const test::TempFolder folder;
    copyModels(folder);
    const auto whole = std::filesystem::file_size(folder / "objects.onnx");
    for (const auto size : {whole - 1, whole / 2, whole / 100, std::uintmax_t(20), std::uintmax_t(0)}) {
        std::filesystem::resize_file(folder / "objects.onnx", size);
        const auto error = loadError(folder);
        EXPECT_NE(error.reason, ModelError::Reason::Missing) << size;
        EXPECT_EQ(error.file, folder / "objects.onnx");
    }
}

TEST(VisionModels, TextInPlaceOfAModelIsBroken)
{
    const test::TempFolder folder;
    copyModels(folder);
    folder.write("face.onnx", "<html>404 Not Found</html>");
    EXPECT_EQ(loadError(folder).reason, ModelError::Reason::Broken);
}

TEST(VisionModels, AModelInTheWrongPlaceIsTold)
{
    const test::TempFolder folder;
    copyModels(folder);
    std::filesystem::copy_file(Models / "pose.onnx", folder / "face.onnx",
                               std::filesystem::copy_options::overwrite_existing);
    const auto error = loadError(folder);
    EXPECT_EQ(error.reason, ModelError::Reason::OtherModel);
    EXPECT_EQ(error.file, folder / "face.onnx");
}
