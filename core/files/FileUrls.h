#pragma once

#include <optional>

#include <QtCore/QUrl>

#include "core/files/FileUrl.h"

namespace larkspan {

// Returns the local file that a URL names, its path as bytes and without a slash at its end. Returns none for any other
// URL, including a file on another machine.
std::optional<FileUrl> fileOfUrl(const QUrl &url);

// Returns the URL of a local file; it keeps every byte of the path.
QUrl urlOfFile(const FileUrl &file);

} // namespace larkspan
