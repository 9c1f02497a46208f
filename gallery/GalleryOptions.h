#pragma once

#include <string>

#include <QtCore/QSize>
#include <QtCore/QStringList>
#include <tl/expected.hpp>

#include "design/LK.h"

namespace larkspan {

// The options of the gallery's command line.
struct GalleryOptions
{
    QString page; // empty for the first
    LK::Theme theme = LK::Theme::Dark;
    double scale = 1.0; // of the display, above 0
    bool boring = false;
    bool still = false; // nothing moves by itself
    QSize size{1040, 720};

    // arguments: without the program's name. A failure is the text to print: what is wrong, or the help asked for.
    [[nodiscard]] static tl::expected<GalleryOptions, QString> parse(const QStringList &arguments);

    friend bool operator==(const GalleryOptions &, const GalleryOptions &) = default;
};

} // namespace larkspan
