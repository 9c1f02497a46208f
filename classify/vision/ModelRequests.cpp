#include "classify/vision/ModelRequests.h"

#include <algorithm>
#include <chrono>
#include <ranges>

#include "classify/vision/ObjectEvidence.h"
#include "classify/vision/RoomEvidence.h"

namespace larkspan {

namespace {

// From here on a person is possible. On 86 photos of people every one reached it, while of 2,800 photos of rooms one
// in twenty did; looking for joints and faces in all of them finds no further people, but bodies in armchairs
// and faces in door handles.
constexpr float possiblePerson = 0.2f;
// The detector is often unsure of people whom the pose confirms.
constexpr float confirmedPerson = 0.5f;
// The surest of a crowd are enough to confirm that there are people.
constexpr std::size_t mostPosesRead = 2;
// The pose detector looks this much further than the person's box: it was trained to see the whole body with room
// around it.
constexpr double poseMargin = 0.1;
constexpr float minFaceConfidence = 0.75f;
// A frame that is narrower than this share of its length is a strip of a picture, and shows no place.
constexpr double narrowestShape = 1.0 / 8.0;

template <typename Work>
auto timed(VisionTimings *timings, VisionTimings::Sum VisionTimings::*sum, Work work)
{
    if (!timings) {
        return work();
    }
    const auto begin = std::chrono::steady_clock::now();
    auto result = work();
    (timings->*sum).nanoseconds += std::chrono::nanoseconds(std::chrono::steady_clock::now() - begin).count();
    ++(timings->*sum).runs;
    return result;
}

// In the order of the detector: the surest first.
std::vector<HumanObservation> possiblePeople(std::span<const DetectedObject> objects)
{
    std::vector<HumanObservation> humans;
    for (const auto &object : objects) {
        if (object.kind == ObjectEvidence::personKind && object.confidence >= possiblePerson) {
            humans.push_back({object.box, object.confidence});
        }
    }
    return humans;
}

bool isStrip(const QImage &frame)
{
    return std::min(frame.width(), frame.height()) < narrowestShape * std::max(frame.width(), frame.height());
}

} // namespace

ModelRequests::ModelRequests(std::shared_ptr<const VisionModels> models, VisionTimings *timings)
    : m_models(std::move(models))
    , m_timings(timings)
{}

std::optional<ModelRequests::Sight> ModelRequests::lookAt(const QImage &frame) const
{
    if (frame.isNull()) {
        return std::nullopt;
    }
    auto seen = timed(m_timings, &VisionTimings::objects, [&] { return m_models->objects().detect(frame); });
    if (!seen) {
        return std::nullopt;
    }
    const auto scene = timed(m_timings, &VisionTimings::scene, [&] { return m_models->scene().featuresOf(frame); });
    if (!scene) {
        return std::nullopt;
    }
    auto word = timed(m_timings, &VisionTimings::rooms, [&] { return m_models->rooms().hear(seen->features, *scene); });
    if (!word) {
        return std::nullopt;
    }
    auto people = confirmPeople(frame, seen->objects);
    if (!people) {
        return std::nullopt;
    }
    return Sight{.objects = std::move(seen->objects), .word = std::move(*word), .people = std::move(*people)};
}

std::vector<std::optional<FrameObservations>> ModelRequests::perform(std::span<const QImage> frames) const
{
    std::vector<Sight> sights;
    std::vector<RoomHead::Word> words;
    std::vector<PersonEvidence::Confirmation> people;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        if (auto sight = lookAt(frames[i])) {
            sight->frame = i;
            if (!isStrip(frames[i])) {
                words.push_back(sight->word);
            }
            people.push_back(sight->people);
            sights.push_back(std::move(*sight));
        }
    }
    const auto place = m_models->rooms().read(words);
    const bool hasPerson = PersonEvidence::showsPerson(people);
    std::vector<std::optional<FrameObservations>> answers(frames.size());
    for (const auto &sight : sights) {
        auto &answer = answers[sight.frame].emplace();
        if (!isStrip(frames[sight.frame])) {
            answer.classifications = RoomEvidence::merged(place, ObjectEvidence::observations(sight.objects));
        }
        answer.featurePrint = sight.word.print;
        if (hasPerson) {
            answer.humans = sight.people.people;
            answer.bodyPoses = static_cast<int>(sight.people.people.size());
            answer.faces = sight.people.faces;
        }
    }
    return answers;
}

std::vector<QString> ModelRequests::supportedIdentifiers() const
{
    return RoomEvidence::identifiers(m_models->rooms());
}

std::optional<PersonEvidence::Confirmation> ModelRequests::confirmPeople(const QImage &frame,
                                                                         std::span<const DetectedObject> objects) const
{
    PersonEvidence::Confirmation confirmed;
    const auto humans = possiblePeople(objects);
    if (humans.empty()) {
        return confirmed;
    }
    const auto faces =
        timed(m_timings, &VisionTimings::face, [&] { return m_models->face().detect(frame, minFaceConfidence); });
    if (!faces) {
        return std::nullopt;
    }
    for (const auto &human : humans | std::views::take(mostPosesRead)) {
        const double right = human.boundingBox.width() * poseMargin;
        const double down = human.boundingBox.height() * poseMargin;
        const auto part = human.boundingBox.adjusted(-right, -down, right, down);
        const auto pose = timed(m_timings, &VisionTimings::pose, [&] { return m_models->pose().read(frame, part); });
        if (!pose) {
            return std::nullopt;
        }
        if (PersonEvidence::isPresent(human, *pose, *faces)) {
            confirmed.people.push_back({human.boundingBox, std::max(human.confidence, confirmedPerson)});
            confirmed.faces += PersonEvidence::facesIn(human.boundingBox, *faces);
        }
    }
    return confirmed;
}

} // namespace larkspan
