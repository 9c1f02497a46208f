// write_event N: the event of N made-up clips, in memory, and the same shoot in every other format. The median of five
// writings each.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <vector>

#include "core/bins/RoomLabel.h"
#include "output/FCPXMLWriter.h"
#include "output/Handoff.h"

using namespace larkspan;

namespace {

std::vector<ClipPtr> madeUpShoot(int count)
{
    const auto &bins = RoomLabel::all();
    std::vector<ClipPtr> clips;
    clips.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        auto clip = std::make_shared<MediaClip>(FileUrl(
            QStringLiteral("/Volumes/CARD/DCIM/100 MEDIA/A %1.MOV").arg(i, 6, 10, QLatin1Char('0')).toStdString()));
        clip->duration = 5.0 + i % 17;
        clip->displaySize = i % 5 == 0 ? QSizeF(2160, 3840) : QSizeF(3840, 2160);
        clip->creationDate = distantPast + std::chrono::seconds(i * 7919LL % count);
        clip->primaryBin = bins[static_cast<std::size_t>(i) * 7 % bins.size()].name;
        clip->timecode = Timecode::parsed(QStringLiteral("10:00:00:00"), 59.94);
        clip->extraBins = {bins[static_cast<std::size_t>(i) * 3 % bins.size()].name};
        clips.push_back(std::move(clip));
    }
    return clips;
}

struct Written
{
    double milliseconds;
    qsizetype size;
};

// write: gives the size of what it wrote.
template <typename Write>
Written medianOfFive(Write write)
{
    std::array<double, 5> milliseconds{};
    qsizetype size = 0;
    for (double &taken : milliseconds) {
        const auto start = std::chrono::steady_clock::now();
        size = write();
        taken = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    }
    std::ranges::sort(milliseconds);
    return {milliseconds[2], size};
}

} // namespace

int main(int argc, char **argv)
{
    const int count = argc == 2 ? std::atoi(argv[1]) : 0;
    if (count <= 0) {
        std::cerr << "usage: write_event N\n";
        return 2;
    }
    const auto clips = madeUpShoot(count);
    const QString name = QStringLiteral("Smith & Co");
    const Written event = medianOfFive([&] { return FCPXMLWriter::event(clips, name).size(); });
    std::cout << "{\"clips\": " << count << ", \"milliseconds\": " << event.milliseconds
              << ", \"characters\": " << event.size;
    for (const HandoffFormat format : allHandoffFormats) {
        const Written handoff = medianOfFive([&] { return handoffText(format, clips, name).size(); });
        std::cout << ", \"" << handoffRawValue(format).toStdString()
                  << "\": {\"milliseconds\": " << handoff.milliseconds << ", \"bytes\": " << handoff.size << '}';
    }
    std::cout << "}\n";
}
