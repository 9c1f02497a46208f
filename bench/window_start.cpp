// window_start PROGRAM [STARTS]: how long from starting the program to its first picture on screen, started again and
// again by a user who has started it before. The picture counts once the display server shows it: the middle of the
// screen is no longer as it was. Needs a display with nothing else on it: script/with-display build/release/bench/…
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <vector>

#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>
#include <QtGui/QGuiApplication>
#include <QtGui/QPixmap>
#include <QtGui/QScreen>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 longest = 60'000; // milliseconds, after which a start has failed

// A line across the middle of the screen: cheap to read, and no window can hide its coming from it.
QImage middleOfScreen()
{
    QScreen *screen = QGuiApplication::primaryScreen();
    const QRect all = screen->geometry();
    return screen->grabWindow(0, 0, all.height() / 2, all.width(), 1).toImage();
}

void end(QProcess &program)
{
    program.terminate();
    program.waitForFinished();
}

// Milliseconds until the screen shows the program's window; none if it never does.
std::optional<double> start(const QString &path, const QProcessEnvironment &environment)
{
    const QImage before = middleOfScreen();
    QProcess program;
    program.setProcessEnvironment(environment);
    program.setStandardErrorFile(QProcess::nullDevice());
    QElapsedTimer timer;
    timer.start();
    program.start(path, {});
    if (!program.waitForStarted()) {
        return std::nullopt;
    }
    while (middleOfScreen() == before) {
        if (timer.elapsed() > longest || program.waitForFinished(0)) {
            end(program);
            return std::nullopt;
        }
        QThread::msleep(2);
    }
    const double taken = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    end(program);
    while (middleOfScreen() != before && timer.elapsed() < longest) {
        QThread::msleep(10);
    }
    return taken;
}

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const int starts = argc == 3 ? std::atoi(argv[2]) : 15;
    if (argc < 2 || argc > 3 || starts <= 0) {
        std::cerr << "usage: window_start PROGRAM [STARTS]\n";
        return 2;
    }
    const QTemporaryDir home; // a user's own, kept from start to start
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"HOME"_s, home.path());
    for (const QString &variable : {u"XDG_CACHE_HOME"_s, u"XDG_CONFIG_HOME"_s, u"XDG_DATA_HOME"_s}) {
        environment.remove(variable);
    }
    const QString path = QString::fromLocal8Bit(argv[1]);
    std::vector<double> taken;
    for (int i = -1; i < starts; ++i) { // the first one warms up
        const auto time = start(path, environment);
        if (!time) {
            std::cerr << "window_start: the program shows nothing\n";
            return 1;
        }
        if (i >= 0) {
            taken.push_back(*time);
        }
    }
    std::ranges::sort(taken);
    std::cout << "{\"starts\": " << starts << ", \"milliseconds\": {\"median\": " << taken[taken.size() / 2]
              << ", \"worst\": " << taken.back() << "}}\n";
    return 0;
}
