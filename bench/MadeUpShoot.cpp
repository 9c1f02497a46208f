#include "bench/MadeUpShoot.h"

#include <algorithm>

#include <QtGui/QPainter>

#include "core/bins/RoomLabel.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan::bench {

namespace {

// A frame as a clip yields one: of the sampling's size, with as much detail as a room has.
QImage frameOf(std::size_t seed)
{
    QImage frame(448, 252, QImage::Format_RGB888);
    QLinearGradient light(0, 0, 448, 252);
    light.setColorAt(0, QColor::fromHsv(static_cast<int>(seed % 360), 120, 220));
    light.setColorAt(1, QColor::fromHsv(static_cast<int>(seed * 7 % 360), 90, 90));
    QPainter painter(&frame);
    painter.fillRect(frame.rect(), light);
    for (std::size_t i = 0; i < 60; ++i) {
        const std::size_t at = seed * 31 + i * 97;
        painter.fillRect(QRectF(at % 448, at * 13 % 252, 10 + at % 60, 5 + at % 40),
                         QColor::fromHsv(static_cast<int>(at % 360), 100, 160, 120));
    }
    return frame;
}

} // namespace

MadeUpShoot::MadeUpShoot(int clips, int bins)
{
    const std::filesystem::path path = m_folder.path().toStdString();
    const FileUrl folder(path / "shoot");
    m_id = projectID(folder);
    CachedProject project{
        .summary = {.id = m_id, .name = folder.lastPathComponent(), .folderPath = folder, .clipCount = clips}};
    const auto &labels = RoomLabel::all();
    for (int i = 0; i < clips; ++i) {
        project.clips.push_back({.path = folder.appending(u"A %1.MOV"_s.arg(i, 6, 10, QLatin1Char('0'))),
                                 .duration = 5.0 + i % 17,
                                 .displayW = 3840,
                                 .displayH = 2160,
                                 .creationDate = Date(std::chrono::seconds(1'780'000'000 + i)),
                                 .primaryBin = labels[static_cast<std::size_t>(i % bins)].name,
                                 .extraBins = i % 3 == 0 ? std::vector<QString>{unsortedBin()} : std::vector<QString>(),
                                 .confidence = 0.5});
    }
    ProjectFiles(path).save(project);
    m_cache = std::make_unique<ProjectCache>(path);
    m_engine = std::make_unique<SortEngine>(SortSeams{
        .sampleFrames = [](const MediaClip &clip, int, double) { return Frames{frameOf(qHash(clip.url.baseName()))}; },
        .placesInBin = [](const auto &...) { return std::vector<FileUrl>(); },
        .projects = m_cache.get()});
}

void MadeUpShoot::open()
{
    m_engine->openProject(m_id);
}

bool MadeUpShoot::hasAllPictures() const
{
    return std::ranges::none_of(m_engine->clips(), [](const ClipPtr &clip) { return clip->thumbnail.isNull(); });
}

} // namespace larkspan::bench
