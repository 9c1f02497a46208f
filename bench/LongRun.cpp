#include "bench/LongRun.h"

#include <algorithm>
#include <filesystem>

#include "bench/Memory.h"
#include "classify/media/ClipProbe.h"
#include "classify/media/FrameSampler.h"
#include "output/FCPXMLWriter.h"
#include "output/MediaImporter.h"
#include "output/PlacesInBin.h"
#include "tests/support/FfmpegMedia.h"
#include "tests/support/WaitUntil.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan::bench {

namespace {

namespace fs = std::filesystem;
using StageKind = SortEngine::StageKind;

constexpr std::size_t clipsOnCard = 5;
constexpr int readableClips = 4;

int entriesIn(const char *folder)
{
    const fs::directory_iterator entries(folder);
    return static_cast<int>(std::distance(begin(entries), end(entries)));
}

} // namespace

Footprint Footprint::now()
{
    return {.megabytes = residentMegabytes(),
            .threads = entriesIn("/proc/self/task"),
            .openFiles = entriesIn("/proc/self/fd") - 1}; // without the one that lists them
}

LongRun::LongRun(MakeClassifier makeClassifier)
    : m_card(m_folder.filePath(u"card"_s).toStdString())
    , m_shootsFolder(m_folder.filePath(u"Shoots"_s).toStdString())
    , m_settings(m_folder.filePath(u"settings.ini"_s))
    , m_projects(m_folder.filePath(u"Projects"_s).toStdString())
    , m_engine(seams(std::move(makeClassifier)))
{
    makeCard();
}

SortSeams LongRun::seams(MakeClassifier makeClassifier)
{
    const auto described = [](const ImportError &error) { return CopyFailure{error.description()}; };
    return {
        .probeClip = probeClip,
        .sampleFrames = sampleFrames,
        .makeLocalClassifier = std::move(makeClassifier),
        .copyFiles =
            [described](const auto &urls, const FileUrl &destination, const CopyOrder &order) {
                return MediaImporter::copyFiles(urls, destination, order).map_error(described);
            },
        .organizeByBin =
            [described](const auto &clips, const FileUrl &root, bool deleteSources, const CopyOrder &order) {
                return MediaImporter::organizeByBin(clips, root, deleteSources, order).map_error(described);
            },
        .placesInBin = placesInBin,
        .eventText = [](const std::vector<ClipPtr> &clips,
                        const QString &name) { return FCPXMLWriter::event(clips, name); },
        .openFile = [](const FileUrl &) {},
        .settings = &m_settings,
        .projects = &m_projects,
    };
}

// A drone's clip, three of a camera in different containers, and one that was cut off when the battery went.
void LongRun::makeCard() const
{
    const fs::path folder = m_card / "DCIM" / "100MEDIA";
    fs::create_directories(folder);
    const auto make = [&](const char *name, const char *picture, const char *encoder) {
        test::makeMedia(folder / name, std::string("-f lavfi -i ") + picture + "=s=320x180:r=25:d=1 " + encoder);
    };
    make("DJI_0001.MP4", "testsrc2", "-c:v libx264 -preset ultrafast -pix_fmt yuv420p");
    make("C0001.MP4", "gradients", "-c:v libx265 -preset ultrafast -x265-params log-level=error");
    make("C0002.MOV", "testsrc", "-c:v mjpeg -pix_fmt yuvj420p");
    make("C0003.MTS", "smptebars", "-c:v libx264 -preset ultrafast -pix_fmt yuv420p -f mpegts");
    fs::copy_file(folder / "DJI_0001.MP4", folder / "C0004.MP4");
    fs::resize_file(folder / "C0004.MP4", fs::file_size(folder / "C0004.MP4") / 2);
}

std::string LongRun::shoot()
{
    ++m_shoots;
    fs::create_directories(m_shootsFolder);
    m_engine.setImportRoot(FileUrl(m_shootsFolder));
    std::string problem = import();
    if (problem.empty()) {
        edit();
        problem = exportAll();
    }
    if (problem.empty()) {
        problem = reopen();
    }
    m_engine.reset();
    fs::remove_all(m_shootsFolder);
    return problem;
}

std::string LongRun::import()
{
    m_engine.importCard(FileUrl(m_card), u"CARD %1"_s.arg(m_shoots));
    if (!reaches(StageKind::results)) {
        return "the card was not sorted: " + m_engine.stage().text.toStdString();
    }
    if (m_engine.clips().size() != clipsOnCard) {
        return std::to_string(m_engine.clips().size()) + " clips were sorted";
    }
    return thumbnails() == readableClips ? "" : std::to_string(thumbnails()) + " clips have a picture";
}

void LongRun::edit()
{
    const std::vector<ClipPtr> clips = m_engine.clips();
    const auto choices = m_engine.binChoices();
    for (std::size_t i = 0; i < clips.size(); ++i) {
        const std::size_t bin = (static_cast<std::size_t>(m_shoots) + 3 * i) % choices.size();
        m_engine.setPreviewClip(clips[i]);
        m_engine.reassign(clips[i]->id, choices[bin]);
        m_engine.toggleExtraBin(clips[i]->id, choices[(bin + 1) % choices.size()]);
        m_engine.setSelectedBin(choices[bin]);
        m_engine.closePreview();
    }
    m_engine.confirmAll();
}

std::string LongRun::exportAll()
{
    SortOptions options = m_engine.options();
    options.openEditorAfterExport = false;
    options.fileHandling = m_shoots % 2 == 0 ? FileHandling::copy : FileHandling::move;
    options.verifyLevel = m_shoots % 3 == 0 ? VerifyLevel::checksum : VerifyLevel::sizeOnly;
    m_engine.setOptions(options);
    m_engine.exportEvent();
    if (!reaches(StageKind::done)) {
        return "the export failed: " + m_engine.stage().text.toStdString();
    }
    if (!fs::exists(m_engine.stage().event->path())) {
        return "there is no event";
    }
    const bool allThere = std::ranges::all_of(m_engine.clips(), [](const ClipPtr &clip) {
        return clip->destinationURL && fs::exists(clip->destinationURL->path());
    });
    return allThere ? "" : "not all footage is in its folder";
}

std::string LongRun::reopen()
{
    const QString project = m_engine.currentProjectID().value_or(QString());
    m_engine.reset();
    m_engine.openProject(project);
    if (m_engine.stage().kind != StageKind::results || m_engine.clips().size() != clipsOnCard) {
        return "the project could not be opened again";
    }
    // The pictures of moved footage are found at its new place.
    return test::waitUntil([this] { return thumbnails() == readableClips; }) ? "" : "pictures are missing";
}

bool LongRun::reaches(StageKind stage) const
{
    return test::waitUntil([&] {
               const StageKind now = m_engine.stage().kind;
               return now != StageKind::working && now != StageKind::organizing;
           }) &&
           m_engine.stage().kind == stage;
}

int LongRun::thumbnails() const
{
    return static_cast<int>(
        std::ranges::count_if(m_engine.clips(), [](const ClipPtr &clip) { return !clip->thumbnail.isNull(); }));
}

} // namespace larkspan::bench
