// classify_photos TSV [--each FILE]: how the local tier files photos whose bin is known. Each line of the list has a
// bin, a path relative to the list, and a second bin that is right as well or nothing. Further columns are passed over;
// a header that begins with "bin" may put the second bin elsewhere, in a column "or". Each photo is filed as a clip of
// one frame. FILE gets a line for each: path, bin, filed, runner-up, confidence, review.
#include "bench/LabelledFrames.h"

int main(int argc, char **argv)
{
    return larkspan::bench::reportOnList({argv + 1, argv + argc}, "classify_photos",
                                         {.name = 1, .bin = 0, .alternative = 2, .frames = {1}}, "photos");
}
