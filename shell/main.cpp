#include <QtGui/QGuiApplication>

#include "shell/LarkspanApp.h"

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    QGuiApplication::setOrganizationName(QStringLiteral("Larkspan"));
    QGuiApplication::setApplicationName(QStringLiteral("Larkspan"));
    QGuiApplication::setApplicationVersion(QStringLiteral(LARKSPAN_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("larkspan"));

    larkspan::LarkspanApp program;
    if (!program.open()) {
        return 1;
    }
    return QGuiApplication::exec();
}
