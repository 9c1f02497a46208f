#pragma once

#include "core/files/FileUrl.h"

namespace larkspan {

// Have the desktop open and show files. Neither waits for an answer; a failure has no consequence.

// Hands a file to the program that is registered for its type.
void openFile(const FileUrl &file);
// Shows a file selected in the file manager, or its folder where no file manager can do that.
void revealFile(const FileUrl &file);

} // namespace larkspan
