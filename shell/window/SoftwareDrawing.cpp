#include "shell/window/SoftwareDrawing.h"

#include <unistd.h>

#include <vector>

#include <QtCore/QFile>
#include <QtQuick/QQuickWindow>

namespace larkspan {

namespace {

// Qt takes its own options out of the arguments that it gives back.
QList<QByteArray> argumentsOfTheProcess()
{
    QFile file(QStringLiteral("/proc/self/cmdline"));
    (void)file.open(QIODevice::ReadOnly);
    QList<QByteArray> arguments = file.readAll().split('\0');
    arguments.removeLast(); // each ends in a null character
    return arguments;
}

void startAgain()
{
    QList<QByteArray> arguments = argumentsOfTheProcess();
    arguments.append(QStringView(softwareDrawingOption).toUtf8());
    std::vector<char *> words;
    for (QByteArray &argument : arguments) {
        words.push_back(argument.data());
    }
    words.push_back(nullptr);
    execv("/proc/self/exe", words.data()); // only comes back if it failed
}

} // namespace

void chooseDrawing(const QStringList &arguments)
{
    if (arguments.contains(QStringView(softwareDrawingOption))) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
}

void drawWithoutOpenGLWhereItFails(QQuickWindow &window)
{
    if (QQuickWindow::graphicsApi() == QSGRendererInterface::Software) {
        return;
    }
    const auto restart = [](QQuickWindow::SceneGraphError, const QString &message) {
        qWarning("%s Drawing without it.", qUtf8Printable(message));
        startAgain();
        qFatal("The program couldn't be started again.");
    };
    // Direct, since there is no second frame that could wait for the main thread.
    const auto failed =
        QObject::connect(&window, &QQuickWindow::sceneGraphError, &window, restart, Qt::DirectConnection);
    QObject::connect(
        &window, &QQuickWindow::frameSwapped, &window, [failed] { QObject::disconnect(failed); },
        Qt::ConnectionType(Qt::DirectConnection | Qt::SingleShotConnection));
}

} // namespace larkspan
