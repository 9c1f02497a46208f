#include "core/clips/Sidecars.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>
#include <set>
#include <span>
#include <string_view>

#include "core/clips/FootageNames.h"

namespace larkspan {

namespace {

namespace fs = std::filesystem;

// A sidecar's name as it follows from the clip's stem.
struct Kind
{
    std::string_view extension; // lower case
    char letter = '\0';         // of three characters between stem and extension, as in "M01"; none without
    std::string_view clip = {}; // extension that its clip has, lower case; empty for any
};

// The last two are in folders of their own on a card. An import brings them beside their clips.
constexpr std::array besideClips{
    Kind{".xml"},      Kind{".thm"},      Kind{".srt"},      Kind{".lrv"},      Kind{".lrf"},
    Kind{".wav"},      Kind{".cpi"},      Kind{".sidecar"},  Kind{".xml", 'M'}, Kind{".klv", 'M'},
    Kind{".bim", 'R'}, Kind{".smi", 'S'}, Kind{".ppn", 'I'}, Kind{".jpg", 'T'}, Kind{".bmp", '\0', ".mxf"},
};
constexpr std::array sonyThumbnails{Kind{".jpg", 'T'}};
constexpr std::array p2Metadata{Kind{".xml"}};
constexpr std::array p2Thumbnails{Kind{".bmp"}};
constexpr std::array avchdClipInformation{Kind{".cpi"}};

// A folder for sidecars beside the folder of the clips.
struct SideFolder
{
    std::string_view above; // the folder that both are in
    std::string_view clips;
    std::string_view sidecars;
    std::span<const Kind> kinds;
};

constexpr std::array sideFolders{
    SideFolder{"M4ROOT", "CLIP", "THMBNL", sonyThumbnails},
    SideFolder{"XDROOT", "Clip", "Thmbnl", sonyThumbnails},
    SideFolder{"CONTENTS", "VIDEO", "CLIP", p2Metadata},
    SideFolder{"CONTENTS", "VIDEO", "ICON", p2Thumbnails},
    SideFolder{"BDMV", "STREAM", "CLIPINF", avchdClipInformation},
};

constexpr std::string_view goProProxy = "GL";
constexpr std::array<std::string_view, 2> goProClips{"GX", "GH"};

std::string lowerExtension(const fs::path &name)
{
    std::string extension = name.extension().native();
    std::ranges::transform(extension, extension.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension;
}

// The stem of the clip that a name of this kind belongs to; none for a name of another kind.
std::optional<std::string> clipStem(const fs::path &name, const Kind &kind)
{
    constexpr std::size_t length = 3; // of "M01"
    std::string stem = name.stem().native();
    if (lowerExtension(name) != kind.extension) {
        return std::nullopt;
    }
    if (kind.letter == '\0') {
        return stem;
    }
    const auto isDigit = [&stem](std::size_t fromEnd) {
        return std::isdigit(static_cast<unsigned char>(stem[stem.size() - fromEnd])) != 0;
    };
    if (stem.size() <= length || stem[stem.size() - length] != kind.letter || !isDigit(2) || !isDigit(1)) {
        return std::nullopt;
    }
    stem.resize(stem.size() - length);
    return stem;
}

// Names of files, sorted, without hidden ones.
std::set<std::string> filesIn(const fs::path &folder)
{
    std::set<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(folder.empty() ? "." : folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const fs::path name = entry->path().filename();
        std::error_code unknown; // counts as no file
        if (!isHidden(name) && entry->is_regular_file(unknown)) {
            names.insert(name.native());
        }
    }
    return names;
}

// The clips of one folder by their stems.
using ClipsByStem = std::map<std::string, std::string>;

ClipsByStem clipsAmong(const std::set<std::string> &names)
{
    ClipsByStem clips;
    for (const std::string &name : names) {
        if (isVideoFile(name)) {
            clips.emplace(fs::path(name).stem().native(), name); // the first one stays
        }
    }
    return clips;
}

struct Owner
{
    std::string clip;
    std::string stem;
    std::string_view lead;
};

std::optional<Owner> ownerOf(const std::string &name, const ClipsByStem &clips, std::span<const Kind> kinds)
{
    for (const Kind &kind : kinds) {
        const auto stem = clipStem(name, kind);
        const auto clip = stem ? clips.find(*stem) : clips.end();
        if (clip != clips.end() && (kind.clip.empty() || lowerExtension(clip->second) == kind.clip)) {
            return Owner{clip->second, *stem, {}};
        }
    }
    return std::nullopt;
}

std::optional<Owner> ownerOfGoProProxy(const fs::path &name, const ClipsByStem &clips)
{
    const std::string stem = name.stem().native();
    if (lowerExtension(name) != ".lrv" || !stem.starts_with(goProProxy)) {
        return std::nullopt;
    }
    for (const std::string_view lead : goProClips) {
        const auto clip = clips.find(std::string(lead).append(stem, lead.size()));
        if (clip != clips.end()) {
            return Owner{clip->second, stem, goProProxy};
        }
    }
    return std::nullopt;
}

} // namespace

std::string Sidecar::nameBeside(const std::string &clip) const
{
    const std::string stem = fs::path(clip).stem().native();
    return std::string(lead).append(stem, std::min(lead.size(), stem.size())).append(tail);
}

std::vector<Sidecar> Sidecars::of(const FileUrl &clip)
{
    const fs::path folder = clip.path().parent_path();
    const auto [known, isNew] = m_folders.try_emplace(folder);
    ByClip &sidecars = known->second;
    if (isNew) {
        const std::set<std::string> names = filesIn(folder);
        const ClipsByStem clips = clipsAmong(names);
        const auto add = [&](const fs::path &place, const std::string &name, const std::optional<Owner> &owner) {
            if (owner) {
                sidecars[owner->clip].push_back(
                    {FileUrl(place / name), std::string(owner->lead), name.substr(owner->stem.size())});
            }
        };
        for (const std::string &name : names) {
            const auto owner = ownerOf(name, clips, besideClips);
            add(folder, name, owner ? owner : ownerOfGoProProxy(name, clips));
        }
        for (const SideFolder &side : sideFolders) {
            if (folder.filename() == side.clips && folder.parent_path().filename() == side.above) {
                const fs::path place = folder.parent_path() / side.sidecars;
                for (const std::string &name : filesIn(place)) {
                    add(place, name, ownerOf(name, clips, side.kinds));
                }
            }
        }
    }
    const auto found = sidecars.find(clip.lastPathBytes());
    return found == sidecars.end() ? std::vector<Sidecar>() : found->second;
}

std::vector<ClipFiles> withSidecars(std::span<const FileUrl> clips)
{
    Sidecars sidecars;
    std::vector<ClipFiles> all;
    all.reserve(clips.size());
    for (const FileUrl &clip : clips) {
        all.push_back({clip, sidecars.of(clip)});
    }
    return all;
}

} // namespace larkspan
