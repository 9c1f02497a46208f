#pragma once

#include <filesystem>
#include <string>

namespace larkspan {

// The program's start with the user's session: a desktop file in the autostart folder. The file is
// the truth and is read each time, since the desktop's own settings change it too. Main thread; local files only.
class LoginItem
{
public:
    // folder: where the session looks; program: what it is to start.
    explicit LoginItem(std::filesystem::path folder = defaultFolder(), std::filesystem::path program = ownProgram());

    static std::filesystem::path defaultFolder();
    static std::filesystem::path ownProgram();

    // False too for a file that is there but switched off.
    [[nodiscard]] bool isEnabled() const;
    // False if the desktop file can't be written or removed; it then stands as it was.
    [[nodiscard]] bool setEnabled(bool enabled) const;

private:
    std::filesystem::path file() const { return m_folder / "larkspan.desktop"; }
    std::string entry() const;

    std::filesystem::path m_folder;
    std::filesystem::path m_program;
};

} // namespace larkspan
