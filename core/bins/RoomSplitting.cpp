#include "core/bins/RoomSplitting.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

#include "core/bins/RoomLabel.h"
#include "core/clips/ClipOrder.h"

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

QString numbered(const QString &bin, std::size_t number)
{
    return u"%1 %2"_s.arg(bin, QString::number(number));
}

} // namespace

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
        for (std::size_t i = 0; rooms.size() >= 2 && i < rooms.size(); ++i) {
            for (const ClipPtr &clip : rooms[i]) {
                clip->primaryBin = numbered(bin, i + 1);
            }
        }
    }
}

std::map<QString, QString> renumberSplitBins(std::span<const ClipPtr> clips)
{
    std::map<QString, std::map<QString, Date>> families; // the date of each bin's first clip
    for (const ClipPtr &clip : clips) {
        if (const auto family = splitFamily(clip->primaryBin)) {
            const auto bin = families[*family].try_emplace(clip->primaryBin, clip->creationDate).first;
            bin->second = std::min(bin->second, clip->creationDate);
        }
    }
    std::map<QString, QString> renamed;
    for (const auto &[family, dates] : families) {
        std::vector<std::pair<QString, Date>> bins(dates.begin(), dates.end());
        std::ranges::stable_sort(bins, {}, &std::pair<QString, Date>::second);
        for (std::size_t i = 0; i < bins.size(); ++i) {
            renamed.emplace(bins[i].first, bins.size() == 1 ? family : numbered(family, i + 1));
        }
    }
    const auto rename = [&renamed](QString &bin) {
        if (const auto name = renamed.find(bin); name != renamed.end()) {
            bin = name->second;
        }
    };
    for (const ClipPtr &clip : clips) {
        rename(clip->primaryBin);
        std::ranges::for_each(clip->extraBins, rename);
    }
    return renamed;
}

} // namespace larkspan
