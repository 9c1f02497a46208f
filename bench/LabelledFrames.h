#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "bench/Accuracy.h"

namespace larkspan {
class VisionClassifier;
}

namespace larkspan::bench {

// A photo or the frames of a clip, with the bin that it belongs in.
struct LabelledFrames : Filed
{
    std::string name; // as the list names it
    std::vector<std::filesystem::path> frames;
};

// The columns of a tab-separated list, counted from 0.
struct ListColumns
{
    std::size_t name = 0;
    std::size_t bin = 0;
    std::size_t alternative = 0;
    std::vector<std::size_t> frames;
};

// Reads such a list. If its first line names a column "bin" it is a header: it isn't read as an item, and if it has no
// column "or" there are no alternatives, otherwise they are in that one. Paths are relative to the list. Lines that are
// too short are passed over.
std::vector<LabelledFrames> readLabelled(const std::filesystem::path &list, ListColumns columns);

// Files each as the rules file a clip of these frames, scaled as sampling does; on all processors. A frame that can't
// be read is left out.
void fileAll(std::vector<LabelledFrames> &items, const VisionClassifier &classifier);

// Writes a line for each item, apart by tabs: name, bin, filed, runner-up, confidence, review (1 or 0).
// Returns false if it can't.
bool writeEach(const std::filesystem::path &file, const std::vector<LabelledFrames> &items);

// The whole of such a program: "PROGRAM TSV [--each FILE]" prints the report, with the number of items under countKey
// and "framesPerSecond". Returns the exit code.
int reportOnList(const std::vector<std::string> &arguments, const char *program, const ListColumns &columns,
                 const char *countKey);

} // namespace larkspan::bench
