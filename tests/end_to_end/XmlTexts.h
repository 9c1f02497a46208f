#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace larkspan::test {

// What an XPath finds in a well-formed file, each as its text. Fails the test when it isn't well-formed.
std::vector<std::string> inXml(const std::filesystem::path &file, const char *path);

} // namespace larkspan::test
