#pragma once

#include "shell/window/AppState.h"
#include "tests/support/TempFolder.h"

namespace larkspan::test {

// The shell's state, with settings of its own.
struct LauncherState
{
    const TempFolder folder;
    SettingsStore store{QString::fromStdString((folder / "settings.ini").string())};
    SystemAppearance system;
    AppState app{store, system, LoginItem(folder / "autostart", "/usr/bin/larkspan"), [](bool) {}};
};

} // namespace larkspan::test
