// The files that cmake --install leaves in a prefix, and the program that is started from there.
#include <sys/inotify.h>
#include <unistd.h>

#include <set>

#include <QtCore/QProcess>
#include <QtGui/QImage>

#include "design/AppIcon.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/StartedProgram.h"
#include "tests/support/TempFolder.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

namespace fs = std::filesystem;

namespace {

struct Ended
{
    int exitCode = -1;
    std::string output;
};

Ended run(const QStringList &command)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(command.first(), command.mid(1));
    EXPECT_TRUE(waitUntil([&] { return process.state() == QProcess::NotRunning; }));
    return {process.exitCode(), process.readAll().toStdString()};
}

QString text(const fs::path &path)
{
    return QString::fromStdString(path.string());
}

// Notes which files of some folders are opened, by anyone.
class OpenedFiles
{
public:
    explicit OpenedFiles(const std::vector<fs::path> &folders) : m_descriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        for (const fs::path &folder : folders) {
            EXPECT_GE(inotify_add_watch(m_descriptor, folder.c_str(), IN_OPEN), 0);
        }
    }
    ~OpenedFiles() { close(m_descriptor); }
    OpenedFiles(const OpenedFiles &) = delete;
    OpenedFiles &operator=(const OpenedFiles &) = delete;

    const std::set<std::string> &names()
    {
        alignas(inotify_event) char events[4096];
        ssize_t size = 0;
        while ((size = read(m_descriptor, events, sizeof events)) > 0) {
            for (ssize_t at = 0; at < size;) {
                const auto *event = reinterpret_cast<const inotify_event *>(events + at);
                if (event->len > 0) {
                    m_names.insert(event->name);
                }
                at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
            }
        }
        return m_names;
    }

private:
    const int m_descriptor;
    std::set<std::string> m_names;
};

// Installed once for all tests, each of which leaves it as it was.
class Installation : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        prefix = std::make_unique<TempFolder>();
        const Ended installed = run({QStringLiteral(LARKSPAN_CMAKE), u"--install"_s, QStringLiteral(LARKSPAN_BUILD),
                                     u"--prefix"_s, text(prefix->path())});
        ASSERT_EQ(installed.exitCode, 0) << installed.output;
    }
    static void TearDownTestSuite() { prefix.reset(); }

    static QString program() { return text(*prefix / "bin/larkspan"); }
    // A program that reads the networks, as if it were installed beside the real one.
    static Ended loadNetworks()
    {
        const fs::path copy = *prefix / "bin/load_networks";
        fs::copy_file(LARKSPAN_LOAD_NETWORKS, copy);
        Ended ended = run({text(copy)});
        fs::remove(copy);
        return ended;
    }
    static void endsWithoutAWord(StartedProgram &started)
    {
        EXPECT_TRUE(started.isClosed());
        EXPECT_EQ(started.process().exitCode(), 0);
        EXPECT_EQ(started.process().readAllStandardError().toStdString(), "");
    }
    static void startsAndEndsWithoutAWord()
    {
        StartedProgram started(program());
        EXPECT_TRUE(started.showsItsWindow());
        EXPECT_TRUE(started.leavesItsIntro());
        endsWithoutAWord(started);
    }
    static QString desktopFile() { return text(*prefix / "share/applications/larkspan.desktop"); }

    static inline std::unique_ptr<TempFolder> prefix;
};

} // namespace

TEST_F(Installation, ItsDesktopFileIsValidAndStartsTheProgram)
{
    const Ended validation = run({u"desktop-file-validate"_s, desktopFile()});
    EXPECT_EQ(validation.exitCode, 0);
    EXPECT_EQ(validation.output, "");
    const QStringList lines = QString::fromStdString(bytesOf(desktopFile().toStdString())).split(u'\n');
    EXPECT_TRUE(lines.contains(u"Exec=larkspan"_s));
    EXPECT_TRUE(lines.contains(u"Icon=larkspan"_s));
    EXPECT_EQ(access(program().toUtf8().constData(), X_OK), 0);
}

TEST_F(Installation, ItsDescriptionForSoftwareCentresIsValid)
{
    const Ended validation = run({u"appstreamcli"_s, u"validate"_s, u"--no-net"_s, u"--no-color"_s,
                                  text(*prefix / "share/metainfo/com.ostrel.larkspan.metainfo.xml")});
    EXPECT_EQ(validation.exitCode, 0) << validation.output;
}

TEST_F(Installation, ItsManualPageIsFormattedWithoutWarnings)
{
    const fs::path page = *prefix / "share/man/man1/larkspan.1.gz";
    const Ended formatted = run({u"sh"_s, u"-c"_s, u"gzip -dc \"$0\" | groff -man -Tutf8 -ww -z"_s, text(page)});
    EXPECT_EQ(formatted.exitCode, 0);
    EXPECT_EQ(formatted.output, "");
    EXPECT_THAT(run({u"sh"_s, u"-c"_s, u"gzip -dc \"$0\" | groff -man -Tascii -P-cbou"_s, text(page)}).output,
                HasSubstr("larkspan - sort the footage"));
}

// Each file that others made has an entry of its own in the copyright file.
TEST_F(Installation, NamesTheRightsToEveryNetworkAndLibraryThatItShips)
{
    const std::string copyright = bytesOf(*prefix / "share/doc/larkspan/copyright");
    std::vector<std::string> unnamed;
    for (const fs::path folder : {"share/larkspan/models", "lib"}) {
        for (const auto &entry : fs::recursive_directory_iterator(*prefix / folder)) {
            if (entry.is_regular_file() && copyright.find(entry.path().filename().string()) == std::string::npos) {
                unnamed.push_back(entry.path().string());
            }
        }
    }
    EXPECT_THAT(unnamed, IsEmpty());
    for (const char *notice : {"onnxruntime.txt", "onnxruntime-third-parties.txt", "detectors.txt", "scene.txt"}) {
        EXPECT_GT(bytesOf(*prefix / ("share/doc/larkspan/notices/" + std::string(notice))).size(), 500U) << notice;
    }
}

TEST_F(Installation, HasTheIconInAllSizes)
{
    for (const int size : appIconSizes()) {
        const std::string sides = std::to_string(size) + "x" + std::to_string(size);
        const QImage icon(text(*prefix / ("share/icons/hicolor/" + sides + "/apps/larkspan.png")));
        EXPECT_EQ(icon.size(), QSize(size, size));
    }
}

TEST_F(Installation, HoldsNoLinksAndNothingThatIsForOursAlone)
{
    std::set<std::string> unexpected;
    for (const auto &entry : fs::recursive_directory_iterator(*prefix / "")) {
        const std::string name = entry.path().filename().string();
        if (entry.is_symlink() || name.starts_with('.') || name.ends_with(".a") || name.ends_with(".h") ||
            name.ends_with(".qml")) {
            unexpected.insert(entry.path().string());
        }
    }
    EXPECT_THAT(unexpected, IsEmpty());
}

TEST_F(Installation, LooksForItsLibrariesInThePrefixAndOnTheSystemAlone)
{
    const Ended dynamic = run({u"readelf"_s, u"-d"_s, program()});
    EXPECT_THAT(dynamic.output, HasSubstr("$ORIGIN/../"));
    EXPECT_THAT(dynamic.output, Not(HasSubstr(LARKSPAN_BUILD)));
    EXPECT_THAT(dynamic.output, Not(HasSubstr(LARKSPAN_SOURCES)));
    EXPECT_THAT(dynamic.output, Not(HasSubstr("onnxruntime")));
}

TEST_F(Installation, ReadsItsNetworksWithTheEngineInThePrefix)
{
    const Ended loaded = loadNetworks();
    EXPECT_EQ(loaded.exitCode, 0) << loaded.output;
    EXPECT_THAT(loaded.output, HasSubstr((*prefix / LARKSPAN_ENGINE).string()));
    EXPECT_THAT(loaded.output, Not(HasSubstr(LARKSPAN_BUILD)));
    EXPECT_THAT(loaded.output, Not(HasSubstr(LARKSPAN_SOURCES)));
}

TEST_F(Installation, WithoutItsEngineItComesUpAndNamesTheFile)
{
    const fs::path engine = *prefix / LARKSPAN_ENGINE;
    const fs::path aside = *prefix / "engine";
    fs::rename(engine, aside);
    const Ended loaded = loadNetworks();
    EXPECT_EQ(loaded.exitCode, 1);
    EXPECT_EQ(loaded.output, engine.string() + '\n' + engine.string() + '\n');
    startsAndEndsWithoutAWord();
    fs::rename(aside, engine);
}

// The sanitizers, and the symbols for a debugger, name every source file.
TEST_F(Installation, NamesNoPlaceOfTheBuildOrTheSources)
{
#if defined(NDEBUG)
    const std::string bytes = bytesOf(program().toStdString());
    EXPECT_GT(bytes.size(), 1'000'000U);
    EXPECT_EQ(bytes.find(LARKSPAN_BUILD), std::string::npos);
    EXPECT_EQ(bytes.find(LARKSPAN_SOURCES), std::string::npos);
#else
    GTEST_SKIP() << "only what ships is held to this";
#endif
}

TEST_F(Installation, ComesUpFromThereWithItsOwnModelsAndChime)
{
    OpenedFiles opened({*prefix / "share/larkspan", *prefix / "share/larkspan/models"});
    StartedProgram started(program());
    ASSERT_TRUE(started.showsItsWindow());
    EXPECT_TRUE(waitUntil([&] {
        return testing::Value(opened.names(), IsSupersetOf({"objects.onnx", "scene.onnx", "pose.onnx", "face.onnx",
                                                            "rooms.head", "intro_chime.wav"}));
    }));
    // Everything that it is made of.
    const std::string mapped = bytesOf("/proc/" + std::to_string(started.process().processId()) + "/maps");
    EXPECT_THAT(mapped, HasSubstr(program().toStdString()));
    EXPECT_THAT(mapped, Not(HasSubstr(LARKSPAN_BUILD)));
    EXPECT_THAT(mapped, Not(HasSubstr(LARKSPAN_SOURCES)));
    endsWithoutAWord(started);
}

TEST_F(Installation, WithoutItsChimeTheIntroPlaysToItsEndInSilence)
{
    const fs::path chime = *prefix / "share/larkspan/intro_chime.wav";
    const fs::path aside = *prefix / "intro_chime.wav";
    fs::rename(chime, aside);
    startsAndEndsWithoutAWord();
    fs::rename(aside, chime);
}
