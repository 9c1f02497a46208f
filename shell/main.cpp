#include <QtGui/QGuiApplication>

#include "design/AppIcon.h"
#include "shell/LarkspanApp.h"

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    QGuiApplication::setOrganizationName(QStringLiteral("Larkspan"));
    QGuiApplication::setApplicationName(QStringLiteral("Larkspan"));
    QGuiApplication::setApplicationVersion(QStringLiteral(LARKSPAN_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("larkspan"));

    QGuiApplication::setWindowIcon(larkspan::appIcon()); // where there is no desktop file to take it from

    larkspan::LarkspanApp program;
    if (!program.open()) {
        return 1;
    }
    return QGuiApplication::exec();
}
