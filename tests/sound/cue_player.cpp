// cue_player RESOURCES: does what the lines of its input say, and answers each with a line. "chord", "chime" and
// "tick" play a cue and answer how many of the cue's nodes' buffers are pending then; "pending" only counts.
#include <iostream>
#include <string>

#include <QtCore/QCoreApplication>

#include "sound/SoundEngine.h"

using namespace larkspan;

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc != 2) {
        return 2;
    }
    SoundEngine engine(argv[1]);
    for (std::string line; std::getline(std::cin, line);) {
        if (line == "chord") {
            engine.play(SoundCue::resultsChord());
        } else if (line == "chime") {
            engine.play(SoundCue::introChime());
        } else if (line == "tick") {
            engine.playTick(SoundCue::tick());
        } else if (line != "pending") {
            return 2;
        }
        int pending = engine.tickNode().pendingBuffers();
        for (const auto &node : engine.oneShotNodes()) {
            pending += node.pendingBuffers();
        }
        std::cout << pending << std::endl;
    }
}
