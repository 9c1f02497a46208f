#include <gmock/gmock.h>

#include "classify/media/ClipProbe.h"
#include "classify/media/FrameSampler.h"
#include "classify/media/ToneMap.h"
#include "tests/classify/media/MediaSamples.h"
#include "tests/support/TempFolder.h"

using namespace larkspan;
using namespace larkspan::test;

namespace {

// Four quarters: red and lime above, blue and white below. Tells which way up a frame stands.
std::string quarters()
{
    const std::string tail = ":s=64x32:r=5:d=0.4 ";
    return "-f lavfi -i color=red" + tail + "-f lavfi -i color=lime" + tail + "-f lavfi -i color=blue" + tail +
           "-f lavfi -i color=white" + tail +
           "-filter_complex [0][1]hstack[a];[2][3]hstack[b];[a][b]vstack,format=yuv420p ";
}

char letter(QRgb colour)
{
    const bool red = qRed(colour) > 128;
    const bool green = qGreen(colour) > 128;
    const bool blue = qBlue(colour) > 128;
    return red && green && blue ? 'W' : red ? 'R' : green ? 'G' : blue ? 'B' : '?';
}

// The quarters of a frame, row by row.
std::string lookOf(const QImage &frame)
{
    const int left = frame.width() / 4;
    const int top = frame.height() / 4;
    return {letter(frame.pixel(left, top)), letter(frame.pixel(3 * left, top)), letter(frame.pixel(left, 3 * top)),
            letter(frame.pixel(3 * left, 3 * top))};
}

QImage frameOf(const std::filesystem::path &path)
{
    const Frames frames = sampleFrames(*probeClip(FileUrl(path)), 1, 448);
    return frames.empty() ? QImage() : frames.front();
}

struct Shown
{
    std::string look;
    QSize size;

    friend bool operator==(const Shown &, const Shown &) = default;
};

void PrintTo(const Shown &shown, std::ostream *stream)
{
    *stream << shown.look << " " << shown.size.width() << "x" << shown.size.height();
}

Shown shownThrough(double a, double b, double c, double d)
{
    const TempFolder folder;
    const auto &plain = sharedMedia("quarters.mov", quarters() + h264);
    const QImage frame = frameOf(folder.write("clip.mov", withTransform(bytesOf(plain), a, b, c, d)));
    return {lookOf(frame), frame.size()};
}

// One colour through a codec; 10 bits where the pixel format says so.
QColor colourThrough(const std::string &name, const std::string &arguments)
{
    const QImage frame = frameOf(sharedMedia(name, arguments));
    return frame.isNull() ? QColor() : frame.pixelColor(frame.width() / 2, frame.height() / 2);
}

void expectNear(const QColor &colour, int red, int green, int blue, int slack = 4)
{
    EXPECT_NEAR(colour.red(), red, slack);
    EXPECT_NEAR(colour.green(), green, slack);
    EXPECT_NEAR(colour.blue(), blue, slack);
}

// A flat grey of a ten-bit luma value, flagged with a transfer curve of BT.2020.
std::string highRangeGrey(int luma, const std::string &curve)
{
    return "-f lavfi -i color=black:s=64x48:r=5:d=0.4,format=yuv420p10le,geq=lum=" + std::to_string(luma) +
           ":cb=512:cr=512 -c:v libx265 -color_primaries bt2020 -color_trc " + curve + " -colorspace bt2020nc " +
           "-x265-params log-level=none:colorprim=bt2020:transfer=" + curve + ":colormatrix=bt2020nc -tag:v hvc1";
}

} // namespace

TEST(FramePicture, StandsUprightWhateverTheTransform)
{
    EXPECT_EQ(shownThrough(1, 0, 0, 1), (Shown{"RGBW", {128, 64}})) << "as recorded";
    EXPECT_EQ(shownThrough(0, 1, -1, 0), (Shown{"BRWG", {64, 128}})) << "by 90 degrees";
    EXPECT_EQ(shownThrough(-1, 0, 0, -1), (Shown{"WBGR", {128, 64}})) << "by 180 degrees";
    EXPECT_EQ(shownThrough(0, -1, 1, 0), (Shown{"GWRB", {64, 128}})) << "by 270 degrees";
    EXPECT_EQ(shownThrough(-1, 0, 0, 1), (Shown{"GRWB", {128, 64}})) << "mirrored";
    EXPECT_EQ(shownThrough(1, 0, 0, -1), (Shown{"BWRG", {128, 64}})) << "mirrored top to bottom";
    EXPECT_EQ(shownThrough(0, 1, 1, 0), (Shown{"RBGW", {64, 128}})) << "turned and mirrored";
    EXPECT_EQ(shownThrough(0, -1, -1, 0), (Shown{"WGBR", {64, 128}})) << "turned and mirrored the other way";
}

TEST(FramePicture, AZeroTransformChangesNothing)
{
    EXPECT_EQ(shownThrough(0, 0, 0, 0), (Shown{"RGBW", {128, 64}}));
}

TEST(FramePicture, AnAnamorphicRecordingIsShownWide)
{
    EXPECT_EQ(frameOf(sharedMedia("wide.mov", picture("144x108", "25", "0.2") + "-vf setsar=4/3 " + h264)).size(),
              QSize(192, 108));
}

TEST(FramePicture, ColoursFollowTheMatrixAndTheRangeOfTheFile)
{
    const std::string source = "-f lavfi -i color=0xC03060:s=64x48:r=5:d=0.4 ";
    const auto through = [&source](const std::string &name, const std::string &matrix, const std::string &range,
                                   const std::string &flags) {
        return colourThrough(name, source + "-vf format=rgb24,scale=out_color_matrix=" + matrix +
                                       ":out_range=" + range + ",format=yuv444p -c:v libx264 -crf 1 " + flags);
    };
    expectNear(through("bt709.mp4", "bt709", "tv", "-colorspace bt709 -color_range tv"), 0xC0, 0x30, 0x60);
    expectNear(through("bt601.mp4", "bt601", "tv", "-colorspace smpte170m -color_range tv"), 0xC0, 0x30, 0x60);
    expectNear(through("full.mp4", "bt709", "pc", "-colorspace bt709 -color_range pc"), 0xC0, 0x30, 0x60);
    expectNear(through("bt2020.mp4", "bt2020", "tv", "-colorspace bt2020nc -color_range tv"), 0xC0, 0x30, 0x60);
    expectNear(through("untold.mp4", "bt601", "tv", ""), 0xC0, 0x30, 0x60);
}

TEST(FramePicture, LargePicturesThatDoNotSayAreTakenForTelevisionOfToday)
{
    expectNear(colourThrough("untold720.mp4",
                             "-f lavfi -i color=0xC03060:s=1280x720:r=5:d=0.4 -vf "
                             "format=rgb24,scale=out_color_matrix=bt709,format=yuv420p -c:v libx264 -preset ultrafast"),
               0xC0, 0x30, 0x60, 6);
}

TEST(FramePicture, WhiteOfHighDynamicRangeIsBrightAndBlackIsBlack)
{
    // 203 cd/m² in both curves.
    expectNear(colourThrough("pqwhite.mp4", highRangeGrey(573, "smpte2084")), 232, 232, 232, 6);
    expectNear(colourThrough("hlgwhite.mp4", highRangeGrey(721, "arib-std-b67")), 232, 232, 232, 6);
    expectNear(colourThrough("pqblack.mp4", highRangeGrey(64, "smpte2084")), 0, 0, 0, 6);
    // The mastering peak.
    expectNear(colourThrough("pqpeak.mp4", highRangeGrey(723, "smpte2084")), 255, 255, 255, 6);
}

TEST(ToneMap, KeepsOrderAndGreysGrey)
{
    for (const LightCurve curve : {LightCurve::Pq, LightCurve::Hlg}) {
        int last = -1;
        for (int code = 0; code <= 65535; code += 257) {
            const auto value = static_cast<std::uint16_t>(code);
            const std::uint16_t rgb[3] = {value, value, value};
            const QRgb mapped = ToneMap::of(curve).map(rgb);
            EXPECT_NEAR(qRed(mapped), qGreen(mapped), 1);
            EXPECT_NEAR(qBlue(mapped), qGreen(mapped), 1);
            EXPECT_GE(qGreen(mapped), last);
            last = qGreen(mapped);
        }
        EXPECT_EQ(last, 255);
    }
}
