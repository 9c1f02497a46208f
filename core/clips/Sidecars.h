#pragma once

#include <filesystem>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "core/files/FileUrl.h"

namespace larkspan {

// A file that a camera writes for one clip: its metadata, thumbnail, subtitles, proxy or sound.
struct Sidecar
{
    FileUrl url;
    std::string lead; // first letters of its name, where the clip's has others; "GL" of a GoPro's, mostly empty
    std::string tail; // the rest of its name behind the clip's stem: ".THM", "M01.XML"

    // Its name beside a clip of this file name.
    [[nodiscard]] std::string nameBeside(const std::string &clip) const;

    friend bool operator==(const Sidecar &, const Sidecar &) = default;
};

// A clip and what belongs to it.
struct ClipFiles
{
    FileUrl clip;
    std::vector<Sidecar> sidecars;

    friend bool operator==(const ClipFiles &, const ClipFiles &) = default;
};

// Finds the sidecars of clips by their names, in the clip's folder and where a card's layout has further ones:
//
//   beside C0001.MP4          C0001 with XML, THM, SRT, LRV, LRF, WAV, CPI or SIDECAR in any case
//   Sony                      C0001M01.XML, C0001M02.KLV, C0001R01.BIM, C0001S01.SMI, C0001I01.PPN, C0001T01.JPG
//   beside 0001AB.MXF         0001AB.BMP
//   GoPro, beside GX010001    GL010001.LRV (and beside GH010001)
//   Sony, M4ROOT/CLIP         M4ROOT/THMBNL/C0001T01.JPG
//   Sony, XDROOT/Clip         XDROOT/Thmbnl/C0001T01.JPG
//   P2, CONTENTS/VIDEO        CONTENTS/CLIP/0001AB.XML and CONTENTS/ICON/0001AB.BMP
//   AVCHD, BDMV/STREAM        BDMV/CLIPINF/00000.CPI
//
// A video file is a clip of its own, never a sidecar. A sidecar has one clip: of two with one stem the first by name.
// Every folder is read once; one that can't be read has no sidecars. One thread.
class Sidecars
{
public:
    // In the order of the table's folders, by name within each.
    [[nodiscard]] std::vector<Sidecar> of(const FileUrl &clip);

private:
    using ByClip = std::map<std::string, std::vector<Sidecar>>; // by the clip's file name

    std::map<std::filesystem::path, ByClip> m_folders;
};

// Every clip with its sidecars, in the order given.
[[nodiscard]] std::vector<ClipFiles> withSidecars(std::span<const FileUrl> clips);

} // namespace larkspan
