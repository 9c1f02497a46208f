// One clip large.
#include "tests/shell/pictures/ScreenPictures.h"
#include "tests/support/FfmpegMedia.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

TEST_F(ScreenPictures, ThePreview)
{
    openInCorner();
    makeShoot();
    fs::copy_file(sharedMedia("kitchen.mov",
                              "-f lavfi -i testsrc2=s=480x270:r=2:d=600 -f lavfi -i sine=r=8000:d=600 -c:v libx264 "
                              "-preset ultrafast -pix_fmt yuv420p -c:a pcm_s16le"),
                  maple().path() / "A001_C004_1120.mov", fs::copy_options::overwrite_existing);
    sortWhatIsMade();
    engine.setPreviewClip(clipNamed(u"A001_C004_1120"_s));
    (void)shown(u"8.0s · 3840 × 2160 · 59.94 fps"_s);
    picture(u"preview"_s);
    Desktop::click(shown(u"No second bin"_s));
    (void)shown(u"Amenities / Other"_s);
    picture(u"preview-second-bin"_s);
    Desktop::key(u"Escape"_s);
    ASSERT_TRUE(goes(u"Amenities / Other"_s));
    Desktop::click(shown(u"Play"_s));
    (void)shown(u"Pause"_s);
    picture(u"preview-playing"_s, [this] { Desktop::moveTo(shown(u"Pause"_s)); });
    Desktop::key(u"space"_s);
    (void)shown(u"Play"_s);
    picture(u"preview-paused"_s);
    engine.setPreviewClip(clipNamed(u"A001_C012_1120"_s)); // upright
    (void)shown(u"7.4s · 2160 × 3840 · 59.94 fps"_s);
    picture(u"preview-upright"_s);
    Desktop::click(shown(u"Play"_s));
    (void)shown(u"This clip can't be played. Its file may be damaged, or of a kind that can't be played here."_s);
    picture(u"preview-unplayable"_s);
    engine.closePreview();
    fs::remove(maple().path() / "A001_C020 lens cap still on, first take after lunch break.mov");
    engine.setPreviewClip(clipNamed(u"A001_C020 lens cap still on, first take after lunch break"_s));
    mayBeElided.insert(u"A001_C020 lens cap still on, first take after lunch break.mov"_s);
    (void)shown(u"2.1s · 3840 × 2160 · 59.94 fps"_s);
    Desktop::click(shown(u"Play"_s));
    (void)shown(u"This clip isn't there any more. Its file was moved or deleted, or its disk isn't connected."_s);
    picture(u"preview-gone"_s);
}
