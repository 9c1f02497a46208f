// Shows the program at work on a display: larkspan_demo FOLDER
// Films the intro and the launcher, draws and records a small shoot, drags it onto the real window, waits for the bins,
// exports by mouse, and leaves the film, the pictures of each step and the event in the folder, whose content is
// replaced.
#include <cstdio>
#include <exception>
#include <functional>

#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>
#include <QtQuick/QQuickWindow>

#include "design/LK.h"
#include "shell/LarkspanApp.h"
#include "shell/launcher/LKTool.h"
#include "tests/demo/Recording.h"
#include "tests/demo/Scenes.h"
#include "tests/support/Desktop.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/TempFolder.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/WindowDriver.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

namespace {

using StageKind = SortEngine::StageKind;

void require(bool holds, const char *what)
{
    if (!holds) {
        throw std::runtime_error(what);
    }
}

void recordShoot(const fs::path &shoot)
{
    const TempFolder pictures;
    int minute = 0;
    for (const demo::Scene &scene : demo::sampleShoot()) {
        const fs::path picture = pictures / "picture.png";
        require(scene.picture.save(QString::fromStdString(picture.string())), "a picture can't be written");
        const QSize size = scene.picture.size();
        // A slow move towards the middle, three seconds long.
        const QString arguments =
            u"-i %1 -vf zoompan=z=1+0.0012*on:x=iw/2-iw/zoom/2:y=ih/2-ih/zoom/2:d=75:s=%2x%3:fps=25 %4 "
            u"-metadata creation_time=2026-11-20T09:%5:00Z"_s.arg(QString::fromStdString(picture.string()))
                .arg(size.width())
                .arg(size.height())
                .arg(scene.encoding)
                .arg(minute++, 2, 10, QLatin1Char('0'));
        makeMedia(shoot / scene.file.toStdString(), arguments.toStdString());
    }
}

// Drives the program and keeps what it shows.
class Demo : private WindowDriver
{
public:
    explicit Demo(fs::path folder) : m_folder(std::move(folder)) {}

    void run()
    {
        const fs::path shoot = m_folder / "shoot";
        fs::remove_all(m_folder);
        fs::create_directories(shoot);
        filmIntroAndLauncher();
        std::printf("Drawing and recording a sample shoot\n");
        recordShoot(shoot);

        // On a display of its own there is no editor to open the event with.
        SortOptions options = m_program.engine().options();
        options.openEditorAfterExport = false;
        m_program.engine().setOptions(options);

        m_program.state().openTool(u"binnacle"_s);
        picture("landing");
        std::printf("Dropping %s on the window\n", shoot.c_str());
        Desktop::dragFiles({shoot}, shown(u"Drop a shoot folder here"_s));
        require(reaches(StageKind::results), "the sort doesn't end");
        // Over before a picture of it could be taken in every look, so each has a sort of its own.
        picture("working", [this] {
            require(reaches(StageKind::results), "the sort doesn't end");
            m_program.engine().sortAgain();
            require(waitUntil([this] { return m_program.engine().done() >= 4; }), "nothing is sorted");
        });
        require(reaches(StageKind::results), "the sort doesn't end");
        (void)shown(u"Export"_s);
        picture("results");
        for (const BinCount &bin : m_program.engine().binCounts()) {
            std::printf("  %-20s %d\n", qPrintable(bin.bin), bin.count);
        }
        Desktop::click(shown(m_program.engine().binCounts().front().bin));
        picture("bin");
        Desktop::click(shown(u"Export"_s));
        require(reaches(StageKind::done), "no event is written");
        (void)shown(u"Event created"_s);
        picture("done");

        const fs::path event = m_folder / "shoot.fcpxml";
        fs::copy_file(m_program.engine().stage().event->path(), event, fs::copy_options::overwrite_existing);
        std::printf("The event is %s, the pictures are beside it\n", event.c_str());
    }

private:
    void filmIntroAndLauncher()
    {
        std::printf("Filming the intro and the launcher\n");
        QCursor::setPos(0, 0); // out of the way
        demo::Recording film;
        require(m_program.open() && Desktop::awaitWindow(window()), "the window doesn't open");
        require(waitUntil([this] { return m_program.state().phase() == AppState::Phase::App; }),
                "the intro never ends");
        (void)shown(u"Open Binnacle"_s);
        const auto at = [this](double x, double y) {
            return window().mapToGlobal(
                QPoint(static_cast<int>(x * window().width()), static_cast<int>(y * window().height())));
        };
        // Over the grid with the mesh following, then a press for its ripple.
        Desktop::glide(at(0.1, 0.15), at(0.85, 0.2));
        Desktop::glide(at(0.85, 0.2), at(0.5, 0.85));
        Desktop::drag(at(0.5, 0.85), at(0.5, 0.85));
        // Over the card with its light, then from tool to tool: drawn along, by key, and by its dot.
        Desktop::glide(at(0.25, 0.4), at(0.7, 0.6));
        Desktop::drag(at(0.65, 0.85), at(0.4, 0.85));
        require(waitUntil([this] { return m_program.state().toolIndex() == 1; }), "a drag moves nothing");
        for (const int index : {2, 3}) {
            Desktop::key(u"Right"_s);
            require(waitUntil([&] { return m_program.state().toolIndex() == index; }), "a key moves nothing");
            rest();
        }
        Desktop::click(shown(LKTool::all().front().name));
        require(waitUntil([this] { return m_program.state().toolIndex() == 0; }), "a dot moves nothing");
        rest();
        film.save(QRect(window().mapToGlobal(QPoint()), window().size()), m_folder / "launcher.mp4");
    }

    // So that a person sees what there is to see.
    static void rest()
    {
        const QDeadlineTimer end(std::chrono::milliseconds(500));
        (void)waitUntil([&] { return end.hasExpired(); });
    }

    QQuickWindow &driven() const override { return *m_program.window(); }
    void press(const QQuickItem &item) override { Desktop::click(item); }

    QQuickWindow &window() { return driven(); }

    bool reaches(StageKind stage)
    {
        return waitUntil([&] { return m_program.engine().stage().kind == stage; }, std::chrono::seconds(180));
    }

    // Keeps pictures of the window, in both themes and two sizes, once everything has come to rest.
    // begin: what is begun anew for each picture, and taken on its way.
    void picture(const char *step, const std::function<void()> &begin = {})
    {
        for (const QSize size : {QSize(980, 640), QSize(1180, 790)}) {
            window().resize(size);
            for (const LK::Theme theme : {LK::Theme::Dark, LK::Theme::Light}) {
                m_program.state().setAppearance(theme == LK::Theme::Light ? LK::Appearance::AlwaysLight
                                                                          : LK::Appearance::AlwaysDark);
                rest();
                (void)waitUntil([&] { return window().size() == size; });
                if (begin) {
                    begin();
                }
                const QString name =
                    u"%1-%2-%3x%4.png"_s.arg(QLatin1String(step), theme == LK::Theme::Light ? u"light"_s : u"dark"_s)
                        .arg(size.width())
                        .arg(size.height());
                require(window().grabWindow().save(QString::fromStdString((m_folder / name.toStdString()).string())),
                        "a picture can't be written");
            }
        }
    }

    const fs::path m_folder;
    LarkspanApp m_program;
};

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: larkspan_demo FOLDER\n");
        return 2;
    }
    try {
        Demo(fs::absolute(argv[1])).run();
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "larkspan_demo: %s\n", failure.what());
        return 1;
    }
    return 0;
}
