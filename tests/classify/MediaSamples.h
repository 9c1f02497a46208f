#pragma once

#include <string>

#include "core/MediaClip.h"
#include "tests/support/FfmpegMedia.h"

namespace larkspan::test {

// Source arguments for makeMedia: a moving test picture.
inline std::string picture(const std::string &size, const std::string &rate, const std::string &seconds)
{
    return "-f lavfi -i testsrc2=s=" + size + ":r=" + rate + ":d=" + seconds + " ";
}

// Four quarters of one colour each: red, green / blue, white. Tells which way up a frame stands.
inline std::string quarters(const std::string &size, const std::string &rate, const std::string &seconds)
{
    const std::string tail = ":s=" + size + ":r=" + rate + ":d=" + seconds + " ";
    return "-f lavfi -i color=red" + tail + "-f lavfi -i color=lime" + tail + "-f lavfi -i color=blue" + tail +
           "-f lavfi -i color=white" + tail +
           "-filter_complex [0][1]hstack[a];[2][3]hstack[b];[a][b]vstack,format=yuv420p ";
}

inline const std::string h264 = "-c:v libx264 -preset ultrafast -pix_fmt yuv420p ";

} // namespace larkspan::test
