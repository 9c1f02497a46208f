#pragma once

#include <filesystem>

#include <QtCore/QProcess>
#include <QtCore/QRect>

#include "tests/support/TempFolder.h"

namespace larkspan::demo {

// Films the display from the moment it is made, so that nothing is missed of a window that is yet to open. Throws
// std::runtime_error where the ffmpeg program fails.
class Recording
{
public:
    Recording();

    // Ends the film, and leaves what lies in this part of the display, in pixels, as H.264.
    void save(const QRect &part, const std::filesystem::path &file);

private:
    const test::TempFolder m_folder;
    QProcess m_ffmpeg;
};

} // namespace larkspan::demo
