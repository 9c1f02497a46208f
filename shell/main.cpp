#include <vector>

#include <QtGui/QGuiApplication>

#include "design/AppIcon.h"
#include "shell/LarkspanApp.h"
#include "shell/window/SoftwareDrawing.h"

namespace {

// The program's arguments after the platform theme by which Qt shows the desktop's own file panels, through its portal;
// all else it leaves to the theme of the desktop. An argument, since what is opened with the program's environment has
// a theme of its own. Whoever asks for another theme gets that.
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

    QGuiApplication::setWindowIcon(larkspan::appIcon()); // where there is no desktop file to take it from

    larkspan::chooseDrawing(QGuiApplication::arguments());
    larkspan::LarkspanApp program;
    if (!program.open()) {
        return 1;
    }
    return QGuiApplication::exec();
}
