// Reads the networks from where the program keeps them, and tells what its memory is mapped from then, or else which
// file is at fault: the one that the program would name when it starts, and the one that a sort would.
#include <fstream>
#include <iostream>

#include "classify/vision/VisionModels.h"

using namespace larkspan;

int main()
{
    const auto missing = VisionModels::findMissing(VisionModels::shippedFolder());
    const auto models = VisionModels::load();
    if (!models) {
        std::cout << (missing ? missing->file.string() : "nothing") << '\n' << models.error().file.string() << '\n';
        return 1;
    }
    std::cout << std::ifstream("/proc/self/maps").rdbuf();
}
