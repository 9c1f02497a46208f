#include "classify/vision/InferenceEngine.h"

#include "tests/support/TempFolder.h"

using namespace larkspan;
using testing::HasSubstr;

TEST(InferenceEngine, ShipsWithTheProgram)
{
    const auto engine = loadInferenceEngine(shippedInferenceEngine());
    ASSERT_TRUE(engine) << engine.error().detail;
    EXPECT_NE(*engine, nullptr);
    EXPECT_EQ(loadInferenceEngine(shippedInferenceEngine()), engine);
}

TEST(InferenceEngine, ThatIsMissingIsNamed)
{
    const test::TempFolder folder;
    const auto file = folder / "libonnxruntime.so.1";
    EXPECT_EQ(loadInferenceEngine(file).error(),
              (ModelError{ModelError::Reason::Missing, file, "there is no such file"}));
}

TEST(InferenceEngine, ThatIsNoLibraryIsBroken)
{
    const test::TempFolder folder;
    const auto file = folder.write("libonnxruntime.so.1", "no library");
    const auto engine = loadInferenceEngine(file);
    ASSERT_FALSE(engine);
    EXPECT_EQ(engine.error().reason, ModelError::Reason::Broken);
    EXPECT_EQ(engine.error().file, file);
    EXPECT_THAT(engine.error().detail, HasSubstr(file.string()));
}

TEST(InferenceEngine, ThatIsAnotherLibraryIsBroken)
{
    const std::filesystem::path file = LARKSPAN_OTHER_LIBRARY;
    EXPECT_EQ(loadInferenceEngine(file).error(),
              (ModelError{ModelError::Reason::Broken, file, "it is no inference engine"}));
}

TEST(InferenceEngine, WithoutTheInterfaceThatIsAskedForIsTooOld)
{
    const std::filesystem::path file = LARKSPAN_OLD_ENGINE;
    EXPECT_EQ(loadInferenceEngine(file).error(),
              (ModelError{ModelError::Reason::Broken, file, "it is too old for this program"}));
}
