#include "core/RoomSplitting.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

#include "core/ClipOrder.h"
#include "core/RoomLabel.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

using Room = std::vector<ClipPtr>;

constexpr float sameRoom = 12.0f;      // print distance at or below: the same room
constexpr float maybeSameRoom = 20.0f; // below: the same room, with a question for the editor
constexpr float oneTakeBonus = 3.0f;   // taken off between clips of one take
constexpr std::chrono::seconds oneTake{360};

// Single linkage: one similar clip is enough. None when nothing could be compared.
std::optional<float> distanceToRoom(const MediaClip &clip, const Room &room)
{
    std::optional<float> nearest;
    bool isOneTake = false;
    for (const ClipPtr &member : room) {
        isOneTake |= std::chrono::abs(member->creationDate - clip.creationDate) <= oneTake;
        if (member->featurePrint == nullptr) {
            continue;
        }
        const auto distance = clip.featurePrint->computeDistance(*member->featurePrint);
        if (distance && (!nearest || *distance < *nearest)) {
            nearest = distance;
        }
    }
    return nearest && isOneTake ? *nearest - oneTakeBonus : nearest;
}

// One pass in time order: a room only grows, so the same clips always give the same rooms.
std::vector<Room> clusterRoomClips(std::span<const ClipPtr> clips)
{
    std::vector<Room> rooms;
    for (const ClipPtr &clip : clips) {
        float best = std::numeric_limits<float>::max();
        Room *bestRoom = nullptr;
        for (Room &room : rooms) {
            const auto distance = clip->featurePrint ? distanceToRoom(*clip, room) : std::nullopt;
            if (distance && *distance < best) {
                best = *distance;
                bestRoom = &room;
            }
        }
        if (bestRoom == nullptr || best >= maybeSameRoom) {
            rooms.push_back({clip});
            continue;
        }
        bestRoom->push_back(clip);
        if (best > sameRoom) {
            clip->needsReview = true;
            clip->reviewReason = u"might be a different "_s + clip->primaryBin.toLower();
        }
    }
    return rooms;
}

// "Living Room 2" is of the family "Living Room"; a name without a number is of none.
std::optional<QString> splitFamily(const QString &bin)
{
    QStringList pieces = bin.split(u' ', Qt::SkipEmptyParts);
    if (pieces.size() < 2) {
        return std::nullopt;
    }
    bool isNumber = false;
    pieces.takeLast().toLongLong(&isNumber);
    return isNumber ? std::optional(pieces.join(u' ')) : std::nullopt;
}

void giveBin(const Room &clips, const QString &bin)
{
    for (const ClipPtr &clip : clips) {
        clip->primaryBin = bin;
    }
}

void numberRooms(const QString &bin, std::span<const Room> rooms)
{
    int number = 0;
    for (const Room &room : rooms) {
        giveBin(room, u"%1 %2"_s.arg(bin).arg(++number));
    }
}

} // namespace

void splitRepeatedRooms(std::span<const ClipPtr> clips)
{
    std::map<QString, Room> byBin;
    for (const ClipPtr &clip : clips) {
        if (!clip->primaryBin.isEmpty()) {
            byBin[clip->primaryBin].push_back(clip);
        }
    }
    for (auto &[bin, group] : byBin) {
        const auto label = RoomLabel::byName().find(bin);
        if (label == RoomLabel::byName().end() || !label->second.isMultiInstance || group.size() < 2) {
            continue;
        }
        sortByDate(group);
        // Rooms open in time order, so they stand in the order of their first clips already.
        const std::vector<Room> rooms = clusterRoomClips(group);
        if (rooms.size() >= 2) {
            numberRooms(bin, rooms);
        }
    }
}

void renumberSplitBins(std::span<const ClipPtr> clips)
{
    std::map<QString, std::map<QString, Room>> families;
    for (const ClipPtr &clip : clips) {
        if (const auto family = splitFamily(clip->primaryBin)) {
            families[*family][clip->primaryBin].push_back(clip);
        }
    }
    for (auto &[family, bins] : families) {
        if (bins.size() == 1) {
            giveBin(bins.begin()->second, family);
            continue;
        }
        std::vector<Room> rooms;
        for (auto &[bin, room] : bins) {
            sortByDate(room);
            rooms.push_back(std::move(room));
        }
        std::stable_sort(rooms.begin(), rooms.end(),
                         [](const Room &a, const Room &b) { return isEarlier(a.front(), b.front()); });
        numberRooms(family, rooms);
    }
}

} // namespace larkspan
