// photo_features OUT < LIST: what the object detector sees in views of photos, for training. Each line of the list is a
// path and the number of a view (PhotoViews.h), apart by a tab; "made:" in place of a path is a frame that shows
// nothing, and a number of -1 - n is a closer look at the view n, without objects. OUT gets a record of 3040 floats for
// each line, in order: the 2960 features, then the evidence of each of the 80 kinds of objects. A photo that can't be
// read is a record of NaN. The same list gives the same file.
#include <atomic>
#include <cmath>
#include <iostream>
#include <span>
#include <thread>

#include <QtCore/QFile>

#include "classify/models/PhotoViews.h"
#include "classify/ObjectEvidence.h"

using namespace larkspan;

namespace {

struct View
{
    std::string path;
    int number = 0;
};

using Record = std::vector<float>;
constexpr std::size_t recordLength = ObjectDetector::featureCount + ObjectDetector::kindCount;
constexpr std::size_t batchLength = 256;

// FNV-1a: chance must depend on the path alone.
std::uint32_t seedOf(const std::string &path)
{
    std::uint32_t hash = 2166136261u;
    for (const unsigned char byte : path) {
        hash = (hash ^ byte) * 16777619u;
    }
    return hash;
}

std::vector<View> readList(std::istream &stream)
{
    std::vector<View> views;
    for (std::string line; std::getline(stream, line);) {
        const auto tab = line.rfind('\t');
        if (tab != std::string::npos) {
            views.push_back({line.substr(0, tab), std::atoi(line.c_str() + tab + 1)});
        }
    }
    return views;
}

// The seed comes from the end of the path, so that it doesn't matter where the photos lie.
QImage frameOf(const View &view)
{
    if (view.path == "made:") {
        return emptyFrame(view.number);
    }
    const auto photos = view.path.rfind("photos/");
    const auto name = photos == std::string::npos ? view.path : view.path.substr(photos);
    const QImage photo(QString::fromStdString(view.path));
    return viewOfPhoto(photo.convertToFormat(QImage::Format_RGB32), seedOf(name), view.number);
}

Record look(const ObjectDetector &detector, const std::vector<QString> &kinds, const View &view)
{
    if (view.number < 0) {
        const auto frame = frameOf({view.path, -1 - view.number});
        auto record = frame.isNull() ? std::nullopt : detector.lookCloser(frame);
        if (!record) {
            return Record(recordLength, NAN);
        }
        record->resize(recordLength, 0.0f);
        return *record;
    }
    const auto frame = frameOf(view);
    const auto seen = frame.isNull() ? std::nullopt : detector.detect(frame);
    if (!seen) {
        return Record(recordLength, NAN);
    }
    Record record = seen->features;
    record.resize(recordLength, 0.0f);
    for (const auto &observation : ObjectEvidence::observations(seen->objects)) {
        const auto kind = std::ranges::find(kinds, observation.identifier) - kinds.begin();
        record[ObjectDetector::featureCount + static_cast<std::size_t>(kind)] = observation.confidence;
    }
    return record;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::cerr << "usage: photo_features OUT < LIST\n";
        return 2;
    }
    const auto detector = ObjectDetector::load(std::filesystem::path(LARKSPAN_MODELS) / "objects.onnx");
    if (!detector) {
        std::cerr << "photo_features: " << detector.error().file.string() << ": " << detector.error().detail << '\n';
        return 1;
    }
    QFile out(QString::fromLocal8Bit(argv[1]));
    if (!out.open(QIODevice::WriteOnly)) {
        std::cerr << "photo_features: can't write " << argv[1] << '\n';
        return 1;
    }
    const auto views = readList(std::cin);
    const auto kinds = ObjectEvidence::identifiers();
    for (std::size_t first = 0; first < views.size(); first += batchLength) {
        std::vector<Record> batch(std::min(batchLength, views.size() - first));
        std::atomic<std::size_t> next = 0;
        {
            std::vector<std::jthread> workers;
            for (unsigned i = 0; i < std::max(1u, std::thread::hardware_concurrency()); ++i) {
                workers.emplace_back([&] {
                    for (auto at = next++; at < batch.size(); at = next++) {
                        batch[at] = look(*detector, kinds, views[first + at]);
                    }
                });
            }
        }
        for (const auto &record : batch) {
            const auto bytes = static_cast<qint64>(std::span(record).size_bytes());
            if (out.write(reinterpret_cast<const char *>(record.data()), bytes) != bytes) {
                std::cerr << "photo_features: can't write " << argv[1] << '\n';
                return 1;
            }
        }
        std::cerr << '\r' << first + batch.size() << '/' << views.size() << std::flush;
    }
    std::cerr << '\n';
}
