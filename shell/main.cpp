#include <vector>

#include <QtGui/QGuiApplication>

#include "design/AppIcon.h"
#include "shell/LarkspanApp.h"
#include "shell/window/SoftwareDrawing.h"

namespace {

// Returns the program's arguments with a platform theme added: Qt then shows the desktop's own file panels, through its
// portal, and takes all else from the desktop's theme. It is an argument, since programs that are opened from here
// would inherit an environment variable. A theme that the user sets in the environment is left as it is.
std::vector<char *> withDesktopPanels(int argc, char **argv)
{
    static char option[] = "-platformtheme";
    static char theme[] = "xdgdesktopportal";
    std::vector<char *> arguments(argv, argv + argc);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORMTHEME")) {
        arguments.insert(arguments.begin() + 1, {option, theme});
    }
    arguments.push_back(nullptr);
    return arguments;
}

} // namespace

int main(int argc, char **argv)
{
    std::vector<char *> arguments = withDesktopPanels(argc, argv);
    int count = static_cast<int>(arguments.size()) - 1;
    QGuiApplication application(count, arguments.data());
    QGuiApplication::setOrganizationName(QStringLiteral("Larkspan"));
    QGuiApplication::setApplicationName(QStringLiteral("Larkspan"));
    QGuiApplication::setApplicationVersion(QStringLiteral(LARKSPAN_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("larkspan"));

    QGuiApplication::setWindowIcon(larkspan::windowIcon()); // for desktops without our desktop file

    larkspan::chooseDrawing(QGuiApplication::arguments());
    larkspan::LarkspanApp program;
    if (!program.open()) {
        return 1;
    }
    return QGuiApplication::exec();
}
