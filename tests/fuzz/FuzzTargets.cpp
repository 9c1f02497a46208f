#include "tests/fuzz/FuzzTargets.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

#include <QtCore/QCryptographicHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include "classify/cloud/CloudVerdict.h"
#include "classify/media/ClipProbe.h"
#include "classify/media/FrameSampler.h"
#include "classify/vision/PictureTensor.h"
#include "classify/vision/RoomHead.h"
#include "core/projects/ProjectJson.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan::fuzz {

namespace {

void require(bool isSound, const char *claim)
{
    if (!isSound) {
        std::fprintf(stderr, "not so: %s\n", claim);
        std::abort();
    }
}

QByteArray bytesOf(Input input)
{
    return {input.data(), static_cast<qsizetype>(input.size())};
}

// A file in memory, by a path that leads to it while it lives.
class MemoryFile
{
public:
    explicit MemoryFile(Input content) : m_fd(::memfd_create("input", MFD_CLOEXEC))
    {
        while (!content.empty()) {
            const ssize_t count = ::write(m_fd, content.data(), content.size());
            require(count > 0, "a file in memory can be written");
            content = content.subspan(static_cast<std::size_t>(count));
        }
    }
    ~MemoryFile() { ::close(m_fd); }
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;

    std::string path() const { return "/proc/self/fd/" + std::to_string(m_fd); }

private:
    int m_fd;
};

template <typename Number>
std::string bytesOfNumber(Number number)
{
    std::string bytes(sizeof(number), '\0');
    std::memcpy(bytes.data(), &number, sizeof(number));
    return bytes;
}

void readHead(Input content)
{
    std::string file = "LKROOMS\n" + bytesOfNumber(std::uint32_t(3));
    file.append(content.data(), content.size());
    file += QCryptographicHash::hash(QByteArray::fromStdString(file), QCryptographicHash::Sha256).toStdString();
    const MemoryFile memory(file);
    const auto head = RoomHead::load(memory.path());
    if (!head) {
        require(!head.error().detail.empty(), "a head that isn't read says why");
        return;
    }
    // The head alone knows how many features it wants, and says so only by refusing.
    std::uint32_t inputs = 0;
    std::memcpy(&inputs, content.data(), sizeof(inputs));
    const std::vector<float> features(inputs, 0.5f);
    const auto word = head->hear(features, {});
    require(word.has_value(), "a head hears as many features as it was trained on");
    require(!head->hear(features, std::array{0.5f}), "a head hears no other number of features");
    const std::array words{*word, *word};
    const auto reading = head->read(words);
    require(reading.scenes.size() == head->identifiers().size(), "a reading has all scenes");
}

void readNetwork(Input input)
{
    const MemoryFile memory(input);
    constexpr std::array expected{InferenceSession::Expected{"scores", 4}};
    const auto network = InferenceSession::load(memory.path(), expected);
    if (!network) {
        require(!network.error().detail.empty(), "a network that isn't read says why");
        return;
    }
    constexpr int side = 8;
    const PictureTensor picture(QSize(side, side), std::vector<float>(3 * side * side, 0.5f));
    if (const auto outputs = network->run(picture)) {
        require(outputs->size() == expected.size(), "a run gives every output");
        const ModelOutput &scores = outputs->front();
        require(scores.channels == expected.front().channels, "a run gives as many channels as expected");
        for (int channel = 0; channel < scores.channels; ++channel) {
            require(scores.plane(channel).size() == static_cast<std::size_t>(scores.rows * scores.columns),
                    "a run fills its planes");
        }
    }
}

} // namespace

void readMedia(Input input)
{
    constexpr MediaLimits limits{.time = std::chrono::milliseconds(1500), .bytes = 64 << 20};
    constexpr int count = 4;
    constexpr int side = 448;
    const MemoryFile file(input);
    const ClipPtr clip = probeClipWithin(FileUrl(file.path()), limits);
    require(clip->duration >= 0.0 && std::isfinite(clip->duration), "a clip's length is a length");
    require(clip->frameDurationScale > 0, "a frame's duration has a scale");
    require(clip->naturalSize.width() >= 0.0 && clip->naturalSize.height() >= 0.0, "a picture's size is a size");
    const Frames frames = sampleFramesWithin(*clip, count, side, limits);
    require(frames.size() <= count, "there are no more frames than asked for");
    for (const QImage &frame : frames) {
        require(!frame.isNull() && std::max(frame.width(), frame.height()) <= side, "a frame has the size asked for");
    }
}

void readProject(Input input)
{
    const QByteArray json = bytesOf(input);
    if (const auto project = decodeProject(json)) {
        const auto again = decodeProject(encodeProject(*project));
        require(again == project, "a project that was read is written so that it reads the same");
        for (const ClipRecord &record : project->clips) {
            require(ClipRecord::fromClip(*record.toClip()) == record, "a clip gives back its record");
        }
    }
    if (const auto index = decodeProjectIndex(json)) {
        require(decodeProjectIndex(encodeProjectIndex(*index)) == index,
                "a list that was read is written so that it reads the same");
    }
}

void readModel(Input input)
{
    if (!input.empty() && input.front() == 'H') {
        readHead(input.subspan(1));
    } else {
        readNetwork(input);
    }
}

void readCloudReply(Input input)
{
    const auto check = [](const auto &answer, const auto &again) {
        require(answer == again, "the same reply gives the same answer");
        require(answer || !answer.error().errorDescription().isEmpty(), "an error has words");
    };
    const QByteArray body = bytesOf(input);
    check(parseReply(body), parseReply(body));
    const QString text = QString::fromUtf8(body);
    check(parseVerdict(text), parseVerdict(text));
    const QJsonObject block{{u"type"_s, u"text"_s}, {u"text"_s, text}};
    const QByteArray wrapped = QJsonDocument(QJsonObject{{u"content"_s, QJsonArray{block}}}).toJson();
    require(parseReply(wrapped) == parseVerdict(block[u"text"_s].toString()), "a reply is read as its text is");
}

} // namespace larkspan::fuzz
