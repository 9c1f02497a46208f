#include "tests/support/TempFolder.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>

namespace larkspan::test {

TempFolder::TempFolder(const std::filesystem::path &parent)
{
    std::string pattern = parent / "larkspan-test-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no temporary folder could be made at " + pattern);
    }
    m_path = pattern;
}

TempFolder::~TempFolder()
{
    std::error_code ignored; // a test that leaves a mount or a read-only folder behind has failed already
    std::filesystem::remove_all(m_path, ignored);
}

std::filesystem::path TempFolder::write(const std::filesystem::path &name, std::string_view content) const
{
    const auto path = m_path / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (!file.flush()) {
        throw std::runtime_error("could not write " + path.string());
    }
    return path;
}

} // namespace larkspan::test
