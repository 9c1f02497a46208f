#include "output/RunFiles.h"

namespace larkspan {

RunFiles::RunFiles(std::span<const FileUrl> clips) : m_clipCount(clips.size())
{
    std::size_t clip = 0;
    for (const ClipFiles &files : withSidecars(clips)) {
        m_urls.push_back(files.clip);
        m_parts.push_back({.clip = clip});
        std::size_t behindClip = 0;
        for (const Sidecar &sidecar : files.sidecars) {
            m_urls.push_back(sidecar.url);
            m_parts.push_back({clip, ++behindClip, sidecar});
        }
        ++clip;
    }
}

std::string RunFiles::nameOfCopy(std::size_t file, const std::filesystem::path &clipCopy) const
{
    return isSidecar(file) ? m_parts[file].sidecar.nameBeside(clipCopy.filename().native()) : url(file).lastPathBytes();
}

} // namespace larkspan
