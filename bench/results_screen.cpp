// results_screen N: a sorted shoot of N made-up clips in the real screen, in a window of its own: how long from the
// click that opens it to the frame that shows its results, and from an edit to the frame that shows that, the save
// included; and the memory of this process and of its thumbnails. Without a display of its own:
// script/with-display build/release/bench/…
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include <QtCore/QElapsedTimer>
#include <QtGui/QGuiApplication>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtQml/QQmlExtensionPlugin>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QTest>

#include "bench/MadeUpShoot.h"
#include "bench/Memory.h"
#include "core/bins/RoomLabel.h"
#include "screens/clips/ClipThumbnails.h"

Q_IMPORT_QML_PLUGIN(Larkspan_DesignPlugin)
Q_IMPORT_QML_PLUGIN(Larkspan_ScreensPlugin)

using namespace larkspan;
using namespace larkspan::bench;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int edits = 60;
constexpr int openings = 7;

// Milliseconds from before the step to the end of the first frame that is drawn after it.
template <typename Step>
double untilShown(QQuickWindow &window, Step step)
{
    QEventLoop loop;
    QElapsedTimer timer;
    double taken = 0;
    timer.start();
    step();
    // The frame in the works when the step was made isn't the one that shows it: that begins with a new sync.
    const auto synced = QObject::connect(
        &window, &QQuickWindow::afterSynchronizing, &loop,
        [&] {
            QObject::connect(
                &window, &QQuickWindow::frameSwapped, &loop,
                [&] {
                    taken = static_cast<double>(timer.nsecsElapsed()) / 1e6;
                    QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
                },
                static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::SingleShotConnection));
        },
        static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::SingleShotConnection));
    window.update();
    loop.exec();
    QObject::disconnect(synced);
    return taken;
}

std::string spread(std::vector<double> values)
{
    std::ranges::sort(values);
    const auto at = [&](double share) {
        return std::to_string(values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))]);
    };
    return "{\"median\": " + at(0.5) + ", \"worst\": " + at(1) + "}";
}

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const int count = argc == 2 ? std::atoi(argv[1]) : 0;
    if (count <= 0) {
        std::cerr << "usage: results_screen N\n";
        return 2;
    }
    MadeUpShoot shoot(count, 12);
    SortEngine &engine = shoot.engine();
    QQmlEngine qml;
    qml.addImportPath(u"qrc:/qt/qml"_s);
    qml.addImageProvider(ClipThumbnails::providerName(), new ClipThumbnails(engine)); // owned by qml
    QQmlComponent component(&qml);
    component.setData("import Larkspan.Screens\nBinnacleView { buildNumber: 1; classifierProblem: \"\" }",
                      QUrl(u"qrc:/qt/qml/View.qml"_s));
    const std::unique_ptr<QQuickItem> root(qobject_cast<QQuickItem *>(
        component.createWithInitialProperties({{u"engine"_s, QVariant::fromValue(&engine)}})));
    if (!root) {
        qFatal("%s", qPrintable(component.errorString()));
    }
    QQuickWindow window;
    window.resize(1180, 790);
    root->setParentItem(window.contentItem());
    root->setSize(window.size());
    window.show();
    if (!QTest::qWaitForWindowExposed(&window)) {
        qFatal("The window doesn't come up");
    }

    std::vector<double> opening;
    for (int i = 0; i < openings; ++i) {
        engine.reset();
        QTest::qWait(300);
        opening.push_back(untilShown(window, [&] { shoot.open(); }));
    }
    while (!shoot.hasAllPictures()) {
        QTest::qWait(50);
    }
    QTest::qWait(500);
    const double resident = residentMegabytes();

    qsizetype bytes = 0;
    for (const ClipPtr &clip : engine.clips()) {
        bytes += clip->thumbnail.byteCount();
    }
    std::vector<double> editing;
    for (int i = 0; i < edits; ++i) {
        const ClipPtr clip = engine.clipsInBin(*engine.selectedBin()).front();
        editing.push_back(untilShown(window, [&] { engine.reassign(clip->id, unsortedBin()); }));
        QTest::qWait(30);
    }
    std::cout << "{\"clips\": " << count << ", \"openMilliseconds\": " << spread(opening)
              << ", \"firstOpenMilliseconds\": " << opening.front() << ", \"editMilliseconds\": " << spread(editing)
              << ", \"residentMegabytes\": " << resident
              << ", \"thumbnailMegabytes\": " << static_cast<double>(bytes) / 1e6
              << ", \"mostThumbnailMegabytes\": " << static_cast<double>(count * Thumbnail::mostBytes) / 1e6 << "}\n";
}
