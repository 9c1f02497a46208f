// frame_times VIEW [--size WxH] [--theme dark|light] [--frames N] [--idle SECONDS]: what a frame of a view costs in
// processor time. The view fills a real window, which is drawn sixty times a second while the view is stirred: what
// moves moves, and the pointer sweeps across.
//
// "cpuMilliseconds" is the time of the main and the render thread; "processMilliseconds" adds all other threads, and so
// a software rasterizer's. "baseline" is a window of the same size with nothing but its background, in the same run:
// what Qt and the driver cost by themselves. "ownAllocationsPerFrame" counts within the code of a background alone,
// over as many frames: on both threads, with its pointer moving and five ripples under way. VIEW "gallery" measures
// every page and tells the heaviest. With --idle nothing is stirred: the frames drawn and the share of a core spent
// once the view has come to rest.
//
// Without a display of its own: script/with-display build/release/bench/frame_times VIEW
//
// A view is added by a line in views(): its name, the QML that makes it, and how it is stirred before each frame.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>

#include <QtCore/QCommandLineParser>
#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTimer>
#include <QtGui/QGuiApplication>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtQml/QQmlExtensionPlugin>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QTest>

#include "bench/FrameClock.h"
#include "bench/MadeUpShoot.h"
#include "gallery/Gallery.h"
#include "screens/clips/ClipThumbnails.h"
#include "tests/shell/launcher/LauncherState.h"
#include "tests/support/CountedBackdrop.h"

Q_IMPORT_QML_PLUGIN(Larkspan_DesignPlugin)
Q_IMPORT_QML_PLUGIN(Larkspan_GalleryPlugin)
Q_IMPORT_QML_PLUGIN(Larkspan_ScreensPlugin)
Q_IMPORT_QML_PLUGIN(Larkspan_ShellPlugin)

using namespace larkspan;
using namespace larkspan::bench;
using namespace Qt::Literals::StringLiterals;

namespace {

struct View
{
    QString name;
    QString qml; // one object that fills the window
    std::function<void(QQuickWindow &window, int frame)> stir;
    std::function<void()> prepare = {};
    // Gives the engine what the view needs, and says the view's properties.
    std::function<QVariantMap(QQmlEngine &qml)> equip = {};
    // Calls of malloc by the view's own code in a frame; for views that draw by themselves.
    std::function<double(QSize size, int frames)> ownAllocations = {};
};

// From left to right and back, slowly down: over everything that a view shows, sooner or later.
void sweepPointer(QQuickWindow &window, int frame)
{
    constexpr int step = 9; // points a frame
    const int there = window.width() - 1;
    const int x = std::abs((frame * step) % (2 * there) - there);
    const int y = (frame * step / there * 61 + 20) % window.height();
    QTest::mouseMove(&window, QPoint(x, y));
}

// As many ripples as five clicks in a ripple's lifetime keep alive.
void sweepAndClick(QQuickWindow &window, int frame)
{
    constexpr int framesBetweenClicks = 10;
    sweepPointer(window, frame);
    if (frame % framesBetweenClicks == 0) {
        QTest::mouseClick(&window, Qt::LeftButton, {},
                          QPoint(frame * 37 % window.width(), frame * 53 % window.height()));
    }
}

// Returns the calls of malloc by a backdrop in a frame, once it has been stirred for a while.
template <typename Canvas>
double ownAllocations(QSize size, int frames)
{
    constexpr int warmUp = 150;
    QQuickWindow window;
    window.resize(size);
    test::CountedBackdrop<Canvas> canvas;
    canvas.setParentItem(window.contentItem());
    canvas.setSize(size);
    int frame = 0;
    const auto stirOnce = [&] {
        if constexpr (std::is_same_v<Canvas, LKKineticGridCanvas>) {
            test::stir(canvas, frame++);
        }
    };
    QObject::connect(&window, &QQuickWindow::afterAnimating, &canvas, stirOnce);
    window.show();
    stirOnce();
    const auto draw = [&](int count) {
        if (!QTest::qWaitFor([&] { return canvas.frames() >= count; }, 60'000)) {
            qFatal("The window doesn't draw");
        }
    };
    draw(warmUp);
    canvas.restart();
    draw(frames);
    return static_cast<double>(canvas.mallocs()) / canvas.frames();
}

// The grid of a large shoot's one bin, from its beginning to its end and back.
View clipGrid()
{
    constexpr int clips = 2000;
    auto shoot = std::make_shared<MadeUpShoot>(clips, 1);
    return {.name = u"clip_grid"_s,
            .qml = u"import QtQuick\nimport Larkspan.Screens\nimport Larkspan.Design\n"
                   u"Rectangle { id: view; required property SortEngine engine; color: LK.palette.surfaceWindow\n"
                   u"BinChoices { id: bins; engine: view.engine }\n"
                   u"ClipGridView { anchors.fill: parent; engine: view.engine; choices: bins } }"_s,
            .stir =
                [](QQuickWindow &window, int frame) {
                    constexpr double step = 24; // points a frame: a brisk flick of the wheel
                    auto *grid = window.contentItem()->childItems().first()->findChild<QQuickItem *>(u"clips"_s);
                    const double range = grid->property("contentHeight").toDouble() - grid->height();
                    const double way = std::fmod(frame * step, 2 * range);
                    grid->setProperty("contentY", way < range ? way : 2 * range - way);
                },
            .equip =
                [shoot](QQmlEngine &qml) {
                    qml.addImageProvider(ClipThumbnails::providerName(), new ClipThumbnails(shoot->engine()));
                    shoot->open();
                    while (!shoot->hasAllPictures()) {
                        QTest::qWait(20);
                    }
                    return QVariantMap{{u"engine"_s, QVariant::fromValue(&shoot->engine())}};
                }};
}

// The launcher while its cards move: a step to and fro, over and over.
View launcher()
{
    auto state = std::make_shared<test::LauncherState>();
    return {.name = u"launcher"_s,
            .qml = u"import Larkspan.Shell\nHomeView { focus: true }"_s,
            .stir =
                [state](QQuickWindow &, int frame) {
                    constexpr int framesBetweenSteps = 24; // about as long as a step lasts
                    state->app.setToolIndex(frame / framesBetweenSteps % 2);
                },
            .equip =
                [state](QQmlEngine &) {
                    return QVariantMap{{u"app"_s, QVariant::fromValue(&state->app)}};
                }};
}

std::vector<View> views()
{
    std::vector<View> all{
        {.name = u"kinetic_grid"_s,
         .qml = u"import Larkspan.Design\nLKKineticGrid {}"_s,
         .stir = sweepAndClick,
         .ownAllocations = ownAllocations<LKKineticGridCanvas>},
        {.name = u"starlight"_s,
         .qml = u"import Larkspan.Design\nLKStarlightBackground {}"_s,
         .stir = [](QQuickWindow &, int) {},
         .ownAllocations = ownAllocations<LKStarlightCanvas>},
    };
    for (const QString &page : Gallery::pages()) {
        all.push_back({.name = u"gallery/"_s + page,
                       .qml = u"import Larkspan.Gallery\nGalleryView {}"_s,
                       .stir = sweepPointer,
                       .prepare = [page] { Gallery::instance().setPage(page); }});
    }
    all.push_back(clipGrid());
    all.push_back(launcher());
    return all;
}

const View baselineView{.name = u"baseline"_s,
                        .qml =
                            u"import QtQuick\nimport Larkspan.Design\nRectangle { color: LK.palette.surfaceWindow }"_s,
                        .stir = sweepPointer};

// A window that shows one view.
class Stage
{
public:
    Stage(const View &view, QSize size, std::size_t frames)
        : m_view(view)
        , m_window(std::make_unique<QQuickWindow>())
        , m_clock(*m_window, frames)
    {
        if (m_view.prepare) {
            m_view.prepare();
        }
        m_engine.addImportPath(u"qrc:/qt/qml"_s);
        QQmlComponent component(&m_engine);
        component.setData(m_view.qml.toUtf8(), QUrl(u"qrc:/qt/qml/View.qml"_s));
        const QVariantMap properties = m_view.equip ? m_view.equip(m_engine) : QVariantMap();
        m_root.reset(qobject_cast<QQuickItem *>(component.createWithInitialProperties(properties)));
        if (!m_root) {
            qFatal("%s", qPrintable(component.errorString()));
        }
        m_window->resize(size);
        m_root->setParentItem(m_window->contentItem());
        m_root->setSize(size);
        m_window->show();
        if (!QTest::qWaitForWindowExposed(m_window.get())) {
            qFatal("The window doesn't come up");
        }
    }
    ~Stage() { m_root.reset(); }
    Stage(const Stage &) = delete;
    Stage &operator=(const Stage &) = delete;

    // Draws so many frames, after some that warm caches and shaders up.
    std::vector<FrameCost> draw(std::size_t frames)
    {
        constexpr std::size_t warmUp = 60;
        drawUntil(warmUp);
        m_clock.restart();
        drawUntil(frames);
        m_window->hide(); // no frame is being drawn when the notes are read
        return m_clock.costs();
    }

    QJsonObject idle(int seconds)
    {
        constexpr int settling = 2; // what moves on appearing comes to rest
        wait(settling);
        m_clock.restart();
        const double before = processMilliseconds();
        QElapsedTimer timer;
        timer.start();
        wait(seconds);
        const double spent = processMilliseconds() - before;
        return {{u"view"_s, m_view.name},
                {u"seconds"_s, seconds},
                {u"frames"_s, static_cast<qint64>(m_clock.count())},
                {u"corePercent"_s, 100.0 * spent / static_cast<double>(timer.elapsed())}};
    }

private:
    // Without polling, which QTest's own waiting does.
    static void wait(int seconds)
    {
        QEventLoop loop;
        QTimer::singleShot(std::chrono::seconds(seconds), &loop, &QEventLoop::quit);
        loop.exec();
    }

    void drawUntil(std::size_t frames)
    {
        QEventLoop loop;
        QTimer pace;
        pace.setTimerType(Qt::PreciseTimer);
        QObject::connect(&pace, &QTimer::timeout, &loop, [&] {
            if (m_clock.count() > frames) {
                loop.quit();
                return;
            }
            m_view.stir(*m_window, m_frame++);
            m_window->update();
        });
        pace.start(1000 / 60);
        loop.exec();
    }

    View m_view;
    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    FrameClock m_clock;
    std::unique_ptr<QQuickItem> m_root;
    int m_frame = 0;
};

// share: 0.5 for the median.
double quantile(const std::vector<FrameCost> &costs, double share, const std::function<double(const FrameCost &)> &of)
{
    std::vector<double> values;
    std::ranges::transform(costs, std::back_inserter(values), of);
    const auto at = values.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
    std::ranges::nth_element(values, at);
    return *at;
}

QJsonObject medianAndP99(const std::vector<FrameCost> &costs, const std::function<double(const FrameCost &)> &of)
{
    return {{u"median"_s, quantile(costs, 0.5, of)}, {u"p99"_s, quantile(costs, 0.99, of)}};
}

QJsonObject measured(const View &view, QSize size, std::size_t frames)
{
    const std::vector<FrameCost> costs = Stage(view, size, frames + 1).draw(frames);
    return {{u"view"_s, view.name},
            {u"frames"_s, static_cast<qint64>(costs.size())},
            {u"cpuMilliseconds"_s, medianAndP99(costs, [](const FrameCost &cost) { return cost.main + cost.render; })},
            {u"mainMilliseconds"_s, medianAndP99(costs, [](const FrameCost &cost) { return cost.main; })},
            {u"renderMilliseconds"_s, medianAndP99(costs, [](const FrameCost &cost) { return cost.render; })},
            {u"processMilliseconds"_s, medianAndP99(costs, [](const FrameCost &cost) { return cost.process; })},
            {u"allocationsPerFrame"_s, quantile(costs, 0.5, [](const FrameCost &cost) { return cost.allocations; })}};
}

double medianCpu(const QJsonObject &report)
{
    return report[u"cpuMilliseconds"_s].toObject()[u"median"_s].toDouble();
}

// Measures all pages: returns the heaviest one's report, with the medians of the others beside it.
QJsonObject heaviestPage(QSize size, std::size_t frames)
{
    QJsonObject heaviest;
    QJsonObject pages;
    for (const View &view : views()) {
        if (view.name.startsWith("gallery/"_L1)) {
            const QJsonObject report = measured(view, size, frames);
            pages[view.name] = medianCpu(report);
            if (heaviest.isEmpty() || medianCpu(report) > medianCpu(heaviest)) {
                heaviest = report;
            }
        }
    }
    heaviest[u"pages"_s] = pages;
    return heaviest;
}

std::optional<View> viewNamed(const QString &name)
{
    const std::vector<View> all = views();
    const auto found = std::ranges::find(all, name, &View::name);
    return found != all.end() ? std::optional(*found) : std::nullopt;
}

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    const QCommandLineOption sizeOption(u"size"_s, u"Of the window, in points."_s, u"WxH"_s, u"1040x720"_s);
    const QCommandLineOption themeOption(u"theme"_s, u"dark or light."_s, u"THEME"_s, u"dark"_s);
    const QCommandLineOption framesOption(u"frames"_s, u"How many to measure."_s, u"N"_s, u"300"_s);
    const QCommandLineOption idleOption(u"idle"_s, u"Measures rest, for so long."_s, u"SECONDS"_s);
    QCommandLineParser parser;
    parser.addPositionalArgument(u"VIEW"_s, u"What to draw; gallery for all of its pages."_s);
    parser.addOptions({sizeOption, themeOption, framesOption, idleOption});
    parser.addHelpOption();
    parser.process(application);

    const QString name = parser.positionalArguments().value(0);
    const std::optional<View> view = viewNamed(name);
    const QStringList sides = parser.value(sizeOption).split(u'x');
    const QSize size = sides.size() == 2 ? QSize(sides[0].toInt(), sides[1].toInt()) : QSize();
    const auto frames = static_cast<std::size_t>(std::max(2, parser.value(framesOption).toInt()));
    if ((!view && name != "gallery"_L1) || size.isEmpty()) {
        std::cerr << "frame_times VIEW [--size WxH]; views: gallery";
        for (const View &known : views()) {
            std::cerr << ' ' << known.name.toStdString();
        }
        std::cerr << '\n';
        return 2;
    }
    LK::instance().setTheme(parser.value(themeOption) == "light"_L1 ? LK::Theme::Light : LK::Theme::Dark);

    QJsonObject report;
    if (view && parser.isSet(idleOption)) {
        report = Stage(*view, size, 0).idle(std::max(1, parser.value(idleOption).toInt()));
    } else {
        report = view ? measured(*view, size, frames) : heaviestPage(size, frames);
        if (view && view->ownAllocations) {
            report[u"ownAllocationsPerFrame"_s] = view->ownAllocations(size, static_cast<int>(frames));
        }
        const QJsonObject baseline = measured(baselineView, size, frames);
        report[u"baseline"_s] = QJsonObject{{u"cpuMilliseconds"_s, baseline[u"cpuMilliseconds"_s]},
                                            {u"processMilliseconds"_s, baseline[u"processMilliseconds"_s]},
                                            {u"allocationsPerFrame"_s, baseline[u"allocationsPerFrame"_s]}};
    }
    report[u"size"_s] = u"%1x%2"_s.arg(size.width()).arg(size.height());
    std::cout << QJsonDocument(report).toJson().toStdString();
}
