#include "output/MountTable.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace larkspan {

namespace {

constexpr int mostReadings = 16; // of a table that keeps changing

// The kernel writes blanks, tabs, line ends and backslashes of a name as a backslash and three octal digits.
std::string unescaped(std::string_view field)
{
    const auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
    std::string name;
    name.reserve(field.size());
    for (std::size_t i = 0; i < field.size(); ++i) {
        const std::string_view digits = field.substr(i + 1, 3);
        if (field[i] == '\\' && digits.size() == 3 && std::ranges::all_of(digits, isOctal)) {
            name.push_back(static_cast<char>((digits[0] - '0') * 64 + (digits[1] - '0') * 8 + (digits[2] - '0')));
            i += 3;
        } else {
            name.push_back(field[i]);
        }
    }
    return name;
}

std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        parts.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

bool isDeviceNumber(std::string_view text)
{
    const std::size_t colon = text.find(':');
    const auto isNumber = [](std::string_view part) {
        return !part.empty() && std::ranges::all_of(part, [](char c) { return c >= '0' && c <= '9'; });
    };
    return colon != std::string_view::npos && isNumber(text.substr(0, colon)) && isNumber(text.substr(colon + 1));
}

// "36 35 98:0 /root /mount/point rw,noatime shared:1 - ext3 /dev/sda rw,errors=continue": the parent's id, the part of
// the file system that is mounted, options, any number of tags up to the dash.
std::optional<MountEntry> parseLine(std::string_view line)
{
    constexpr std::size_t firstTag = 6;
    const std::vector<std::string_view> fields = split(line, ' ');
    if (fields.size() < firstTag) {
        return std::nullopt;
    }
    const auto dash = std::find(fields.begin() + firstTag, fields.end(), "-");
    int id = 0;
    const auto [end, error] = std::from_chars(fields[0].data(), fields[0].data() + fields[0].size(), id);
    const bool hasId = error == std::errc() && end == fields[0].data() + fields[0].size();
    if (!hasId || !isDeviceNumber(fields[2]) || !fields[4].starts_with('/') || fields.end() - dash < 3) {
        return std::nullopt;
    }
    return MountEntry{
        .id = id,
        .device = std::string(fields[2]),
        .mountPoint = unescaped(fields[4]),
        .type = std::string(dash[1]),
        .source = unescaped(dash[2]),
    };
}

} // namespace

std::vector<MountEntry> parseMountTable(std::string_view text)
{
    std::vector<MountEntry> table;
    for (const std::string_view line : split(text, '\n')) {
        if (auto entry = parseLine(line)) {
            table.push_back(std::move(*entry));
        }
    }
    return table;
}

std::vector<MountEntry> newVolumes(std::span<const MountEntry> before, std::span<const MountEntry> after)
{
    const auto isOld = [&](const MountEntry &entry) {
        return std::find(before.begin(), before.end(), entry) != before.end();
    };
    std::vector<MountEntry> volumes;
    std::vector<std::string_view> knownDevices;
    for (const MountEntry &entry : after) {
        if (isOld(entry)) {
            knownDevices.push_back(entry.device);
        }
    }
    for (const MountEntry &entry : after) {
        const bool isKnown = std::ranges::find(knownDevices, entry.device) != knownDevices.end();
        if (!isKnown && mountAt(after, entry.mountPoint) == &entry) {
            knownDevices.push_back(entry.device);
            volumes.push_back(entry);
        }
    }
    return volumes;
}

const MountEntry *mountAt(std::span<const MountEntry> table, const std::filesystem::path &mountPoint)
{
    const auto last = std::find_if(table.rbegin(), table.rend(),
                                   [&](const MountEntry &entry) { return entry.mountPoint == mountPoint; });
    return last == table.rend() ? nullptr : &*last;
}

MountTable::MountTable(const std::filesystem::path &file) : m_file(::open(file.c_str(), O_RDONLY | O_CLOEXEC)) {}

std::vector<MountEntry> MountTable::read() const
{
    // The kernel hands the table out a page at a time and may change it in between, and a line that is missing from one
    // reading would pass for a new mount in the next.
    std::string table;
    for (int reading = 0; reading < mostReadings; ++reading) {
        table = text();
        if (!hasChanged()) {
            break;
        }
    }
    return parseMountTable(table);
}

std::string MountTable::text() const
{
    std::string text;
    std::array<char, 16384> block{};
    ssize_t got = 0;
    while ((got = ::pread(m_file.get(), block.data(), block.size(), static_cast<off_t>(text.size()))) > 0) {
        text.append(block.data(), static_cast<std::size_t>(got));
    }
    return text;
}

bool MountTable::hasChanged() const
{
    pollfd change{.fd = m_file.get(), .events = POLLPRI, .revents = 0};
    return ::poll(&change, 1, 0) > 0 && (change.revents & POLLPRI) != 0;
}

} // namespace larkspan
