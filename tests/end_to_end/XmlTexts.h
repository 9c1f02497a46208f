#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace larkspan::test {

// Returns the text of each node that an XPath finds in a file. Fails the test if the file isn't well-formed.
std::vector<std::string> inXml(const std::filesystem::path &file, const char *path);

} // namespace larkspan::test
