#include "tests/shell/pictures/ScreenPictures.h"

#include <QtGui/QGuiApplication>
#include <QtQml/QQmlExtensionPlugin>

#include "tests/support/Layout.h"

Q_IMPORT_QML_PLUGIN(Larkspan_ShellPlugin)

using namespace Qt::Literals::StringLiterals;
using testing::IsEmpty;

namespace larkspan::test {

namespace {

QList<QSize> sizes()
{
    // Twice as many pixels a point leave no room for the largest on the display.
    return qGuiApp->devicePixelRatio() > 1 ? QList<QSize>{{980, 640}, {1180, 790}}
                                           : QList<QSize>{{980, 640}, {1180, 790}, {2560, 1440}};
}

} // namespace

ScreenPictures::ScreenPictures()
    : ShellWindowTest([this](SortSeams &parts) { useSample(parts); },
                      VolumeWatcher::System{.mountTable = mounts, .deviceTree = tree.path()})
{
    QObject::connect(&app, &AppState::themeChanged, &app, [this] { LK::instance().setTheme(app.theme()); });
}

ScreenPictures::~ScreenPictures()
{
    LK::instance().setTheme(LK::Theme::Dark);
    sampling.open(1000);
    copying.open(1000);
    reading.open(1000);
}

void ScreenPictures::useSample(SortSeams &parts)
{
    parts.probeClip = probeSample;
    parts.makeLocalClassifier = makeSampleClassifier;
    parts.sampleFrames = [this](const MediaClip &clip, int, double) {
        if (isHeldBack) {
            sampling.pass();
        }
        return framesOfSample(clip);
    };
    parts.copyFiles = [this](const auto &...) {
        copying.pass();
        return std::vector<CopyResult>();
    };
    parts.organizeByBin = [this](const auto &clips, const auto &, bool, const CopyOrder &order) -> OrganizeAnswer {
        order.progress(9, static_cast<int>(clips.size()));
        copying.pass();
        return {};
    };
}

void ScreenPictures::openInCorner()
{
    open();
    window->setPosition(0, 0);
    countFrames();
}

void ScreenPictures::openLauncher()
{
    openInIntro();
    window->setPosition(0, 0);
    countFrames();
    app.finishIntro();
    (void)shown(u"Open Binnacle"_s);
}

void ScreenPictures::countFrames()
{
    QObject::connect(window, &QQuickWindow::frameSwapped, window, [this] { ++m_frames; });
}

void ScreenPictures::makeShoot()
{
    for (const std::string &name : sampleNames()) {
        (void)world.write("2026-11-20 Maple Street 14/" + name);
    }
}

void ScreenPictures::sortSample()
{
    makeShoot();
    sortWhatIsMade();
}

void ScreenPictures::sortWhatIsMade()
{
    SortOptions options = engine.options();
    options.tagOpenPlanTwice = false; // so that close calls are the editor's
    engine.setOptions(options);
    engine.sortFolder(maple());
    ASSERT_TRUE(reaches(engine, StageKind::results));
    engine.toggleExtraBin(clipNamed(u"A001_C003_1120"_s)->id, u"Dining Room"_s);
    engine.toggleExtraBin(clipNamed(u"A001_C006_1120"_s)->id, u"Hallway / Stairs"_s);
}

ClipPtr ScreenPictures::clipNamed(const QString &name) const
{
    const auto found = std::ranges::find(engine.clips(), name, [](const ClipPtr &c) { return c->url.baseName(); });
    return found == engine.clips().end() ? nullptr : *found;
}

void ScreenPictures::saveProjects()
{
    int age = 0;
    for (const auto &[name, clips, bins, review] :
         {std::tuple{u"Harbour View 3, penthouse with the roof terrace and both guest apartments"_s, 164, 17, 12},
          {u"Oak Avenue 221"_s, 74, 12, 0},
          {u"Lakeside"_s, 48, 9, 3},
          {u"2026-10-02 Sea Road"_s, 31, 8, 1},
          {u"Foothill Blvd"_s, 55, 11, 0},
          {u"Mill Lane 9"_s, 23, 7, 2}}) {
        (void)cache.save({.summary = {.id = QString::number(++age),
                                      .name = name,
                                      .folderPath = FileUrl(world / name.toStdString()),
                                      .clipCount = clips,
                                      .binCount = bins,
                                      .reviewCount = review,
                                      .savedAt = Date(std::chrono::hours(age))},
                          .clips = {}});
    }
}

void ScreenPictures::picture(const QString &name, const std::function<void()> &hand)
{
    for (const QSize size : sizes()) {
        window->resize(size);
        ASSERT_TRUE(waitUntil([&] { return window->size() == size; }));
        if (hand) {
            hand();
        }
        ASSERT_TRUE(rests());
        std::vector<std::string> faults = layoutFaults(*window, mayBeElided);
        if (!faults.empty()) { // since the last frame a clock may have got a digit, which isn't at its place yet
            ASSERT_TRUE(rests());
            faults = layoutFaults(*window, mayBeElided);
        }
        EXPECT_THAT(faults, IsEmpty()) << name.toStdString() << " at " << size.width() << " by " << size.height();
        keep(name, size);
    }
}

// Until several frames in a row show the same.
bool ScreenPictures::rests()
{
    constexpr int enough = 3;
    constexpr int most = 500;
    std::string last;
    int alike = 0;
    for (int frame = 0; frame < most && alike < enough; ++frame) {
        const int before = m_frames;
        window->requestUpdate();
        if (!waitUntil([&] { return m_frames > before; })) {
            return false;
        }
        const std::string now = layoutOf(*window);
        alike = std::exchange(last, now) == now ? alike + 1 : 0;
    }
    return alike == enough;
}

void ScreenPictures::keep(const QString &name, QSize size)
{
    const QString pictures = qEnvironmentVariable("LARKSPAN_PICTURES");
    if (pictures.isEmpty()) {
        return;
    }
    for (const bool light : {true, false}) { // dark is what the next picture begins with
        app.setAppearance(light ? LK::Appearance::AlwaysLight : LK::Appearance::AlwaysDark);
        QImage last;
        QImage shown;
        for (int i = 0; i < 4 && (shown.isNull() || shown != last); ++i) { // what breathes never rests
            last = shown;
            ASSERT_TRUE(rests());
            shown = window->grabWindow();
        }
        shown.save(u"%1/%2-%3x%4@%5-%6.png"_s.arg(pictures, name)
                       .arg(size.width())
                       .arg(size.height())
                       .arg(qGuiApp->devicePixelRatio())
                       .arg(light ? u"light"_s : u"dark"_s));
    }
}

} // namespace larkspan::test
