#include "screens/preview/PreviewClip.h"

#include "tests/screens/ModelFixture.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using PreviewClipTest = ModelTest;

} // namespace

TEST(DetailsText, TellsLengthPictureAndRate)
{
    MediaClip clip(FileUrl("/a.mov"));
    clip.duration = 12.34;
    clip.displaySize = {3840, 2160};
    clip.frameDurationValue = 1001;
    clip.frameDurationScale = 60000;
    EXPECT_EQ(detailsText(clip), u"12.3s · 3840 × 2160 · 59.94 fps"_s);
    clip.frameDurationValue = 0;
    clip.frameDurationScale = 25;
    EXPECT_EQ(detailsText(clip), u"12.3s · 3840 × 2160 · 25.00 fps"_s);
}

TEST_F(PreviewClipTest, LeavesTheClipWithOneSecondBinOrNoneWhateverItHeldBefore)
{
    makeClips({"kitchen 1"});
    PreviewClip preview;
    preview.setEngine(&engine);
    sortShoot();
    const ClipPtr clip = engine.clips().front();
    clip->extraBins = {u"Garage"_s, u"Office"_s};
    engine.setPreviewClip(clip);
    EXPECT_TRUE(preview.isPresent());
    EXPECT_EQ(preview.secondBin(), u"Garage"_s);
    preview.setSecondBin(u"Pool"_s);
    EXPECT_THAT(clip->extraBins, ElementsAre(u"Pool"_s));
    preview.setSecondBin(u"Kitchen"_s);
    EXPECT_THAT(clip->extraBins, IsEmpty()) << "its primary bin is no second one";
    preview.setSecondBin(u"Pool"_s);
    preview.setSecondBin(QString());
    EXPECT_THAT(clip->extraBins, IsEmpty());
    EXPECT_THAT(saved()->clips.front().extraBins, IsEmpty());
    preview.reassign(u"Pool"_s);
    EXPECT_EQ(clip->primaryBin, u"Pool"_s);
    engine.closePreview();
    EXPECT_FALSE(preview.isPresent());
    EXPECT_EQ(preview.name(), u"kitchen 1.mov"_s) << "it may be fading out";
}
