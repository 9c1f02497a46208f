#pragma once

#include <filesystem>
#include <optional>
#include <system_error>

#include <QtCore/QString>

namespace larkspan {

// Returns the name of the file that a typed name stands for: without blanks at its ends, and with the suffix if it has
// none. Returns none for a name that no file can have.
std::optional<QString> saveName(const QString &typed, const QString &suffix);

// The place that a file is to be written to.
struct SavePlace
{
    bool exists = false;
    bool isFolder = false;
    std::error_code problem; // of opening its folder
};

// Looks at the place of a file. Blocks.
SavePlace lookAtPlace(const std::filesystem::path &file);

} // namespace larkspan
