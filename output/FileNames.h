#pragma once

#include <string>

#include <QtCore/QString>

namespace larkspan {

// The nth name to try for a file in a folder, n from 1: "C0042.MP4", "C0042 2.MP4", "C0042 3.MP4". A name longer than
// the folder takes (in bytes) loses the end of its stem, never half a character.
[[nodiscard]] std::string numberedName(const std::string &name, int n, std::size_t longest);

// The folder of a bin, one path component whatever the bin is called; empty for a bin without a name.
[[nodiscard]] std::string binFolderName(const QString &bin);

} // namespace larkspan
