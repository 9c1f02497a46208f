#pragma once

#include <map>
#include <set>
#include <span>
#include <vector>

#include <QtCore/QString>

namespace larkspan {

// One row of the fixed vocabulary that footage is sorted into. A bin is known everywhere by its name alone.
// The lookups are built once, on first use, and may be read from any thread.
struct RoomLabel
{
    QString name;
    std::vector<QString> visionIdentifiers; // of the image taxonomy; each is evidence for this bin
    std::vector<QString> prompts;           // sentences that describe the bin
    bool isMultiInstance = false;           // a house may hold several, told apart by number
    bool isShotType = false;                // a kind of shot, not a place in the house

    // The table, in the order in which bins are listed.
    static const std::vector<RoomLabel> &all();
    static const std::map<QString, RoomLabel> &byName();
    // Returns the bins that each identifier feeds, in the table's order.
    static const std::map<QString, std::vector<QString>> &binsByIdentifier();
    // Bins judged by evidence of their own (a drone's name, people in the frame), never ranked among rooms.
    static const std::set<QString> &exclusiveBins();

    // Returns labels by their names. A name that occurs twice stops the program: the table is wrong.
    static std::map<QString, RoomLabel> keyedByName(std::span<const RoomLabel> labels);

    friend bool operator==(const RoomLabel &, const RoomLabel &) = default;
};

// Hashes all fields, in their order.
std::size_t qHash(const RoomLabel &label, std::size_t seed = 0) noexcept;

// Returns the bin of a clip that nothing is known about. It is no row of the table.
QString unsortedBin();
// The selection that shows the clips under review. Its first character keeps it from ever being a bin's name.
QString reviewKey();
// Returns the text for people where reviewKey() is chosen.
QString reviewTitle();

} // namespace larkspan
