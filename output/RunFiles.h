#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "core/clips/Sidecars.h"

namespace larkspan {

// All files of a copy run in their order: every clip, and behind it its sidecars.
class RunFiles
{
public:
    // Looks for the sidecars.
    explicit RunFiles(std::span<const FileUrl> clips);

    std::size_t size() const { return m_urls.size(); }
    std::size_t clipCount() const { return m_clipCount; }
    const std::vector<FileUrl> &urls() const { return m_urls; }
    const FileUrl &url(std::size_t file) const { return m_urls[file]; }

    // The number of the file's clip among the clips, and the clip's own place among the files.
    std::size_t clipOf(std::size_t file) const { return m_parts[file].clip; }
    std::size_t clipFile(std::size_t file) const { return file - m_parts[file].behindClip; }
    bool isSidecar(std::size_t file) const { return m_parts[file].behindClip > 0; }
    // Nothing of the same clip follows.
    bool endsClip(std::size_t file) const { return file + 1 == size() || !isSidecar(file + 1); }

    // The name to copy it under. clipCopy: of a sidecar, where its clip went.
    [[nodiscard]] std::string nameOfCopy(std::size_t file, const std::filesystem::path &clipCopy) const;

private:
    struct Part
    {
        std::size_t clip = 0;
        std::size_t behindClip = 0; // places
        Sidecar sidecar;            // if it is behind its clip
    };

    std::vector<FileUrl> m_urls;
    std::vector<Part> m_parts;
    std::size_t m_clipCount;
};

} // namespace larkspan
