#pragma once

#include <filesystem>
#include <string>

namespace larkspan {

// Starts the program with the user's session, by a desktop file in the autostart folder. The file is read each time,
// since the desktop's own settings change it too. Main thread; local files only.
class LoginItem
{
public:
    // folder: the autostart folder. program: the file to start.
    explicit LoginItem(std::filesystem::path folder = defaultFolder(), std::filesystem::path program = ownProgram());

    static std::filesystem::path defaultFolder();
    static std::filesystem::path ownProgram();

    // Returns false for a missing desktop file, and for one that is switched off.
    [[nodiscard]] bool isEnabled() const;
    // Returns false if the desktop file can't be written or removed. It is then unchanged.
    [[nodiscard]] bool setEnabled(bool enabled) const;

private:
    std::filesystem::path file() const { return m_folder / "larkspan.desktop"; }
    std::string entry() const;

    std::filesystem::path m_folder;
    std::filesystem::path m_program;
};

} // namespace larkspan
