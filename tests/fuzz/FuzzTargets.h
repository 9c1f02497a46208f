#pragma once

#include <span>

namespace larkspan::fuzz {

// The readers of what comes from outside, each as the program uses it. Given any bytes, they abort where an answer is
// unsound; the sanitizers notice the rest.
using Input = std::span<const char>;

// A camera's file: probed, sampled.
void readMedia(Input input);
// A file of the project cache: a project, or the list of all.
void readProject(Input input);
// A model: behind an "H" the content of a head for rooms, which gets the right magic and checksum; otherwise a network
// of the engine's, which is also run once.
void readModel(Input input);
// The reply of a cloud model: the whole body, or the text in it.
void readCloudReply(Input input);

} // namespace larkspan::fuzz
