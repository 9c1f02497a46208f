#pragma once

#include <filesystem>
#include <string_view>

namespace larkspan::test {

// A folder of a test's own, gone with all it holds at the end of the test.
class TempFolder
{
public:
    explicit TempFolder(const std::filesystem::path &parent = std::filesystem::temp_directory_path());
    ~TempFolder();
    TempFolder(const TempFolder &) = delete;
    TempFolder &operator=(const TempFolder &) = delete;

    const std::filesystem::path &path() const { return m_path; }
    std::filesystem::path operator/(const std::filesystem::path &name) const { return m_path / name; }

    // Writes a file, its folders included, and returns where it stands.
    std::filesystem::path write(const std::filesystem::path &name, std::string_view content = "") const;

private:
    std::filesystem::path m_path;
};

} // namespace larkspan::test
