// classify_clips TSV [--each FILE]: how the local tier files clips whose bin is known. Each line of the list has a
// name, a bin ("Unsorted" for a clip that shows no house), a second bin that is right as well or nothing, and the paths
// of four frames, relative to the list. FILE gets a line for each clip: name, bin, filed, runner-up, confidence,
// review.
#include "bench/LabelledFrames.h"

int main(int argc, char **argv)
{
    return larkspan::bench::reportOnList({argv + 1, argv + argc}, "classify_clips",
                                         {.name = 0, .bin = 1, .alternative = 2, .frames = {3, 4, 5, 6}}, "clips");
}
