#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace larkspan::test {

// Makes a media file with the ffmpeg program: its arguments in one line, separated by spaces, without the output.
// Throws with what the program said if it fails.
void makeMedia(const std::filesystem::path &target, std::string_view arguments);

// The same, in a folder that lives as long as the test program: made once, then shared. Not to be changed.
const std::filesystem::path &sharedMedia(const std::string &name, std::string_view arguments);

// Returns the whole content of a file, also of one whose size the system doesn't tell, as those in /proc. Throws if it
// can't be opened; a device that fails later ends it.
std::string bytesOf(const std::filesystem::path &file);

} // namespace larkspan::test
