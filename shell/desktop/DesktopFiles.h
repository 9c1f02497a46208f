#pragma once

#include "core/FileUrl.h"

namespace larkspan {

// What the desktop does with files on our behalf. Neither waits for an answer; a failure has no consequence.

// Hands a file to the program that is registered for its type.
void openFile(const FileUrl &file);
// Shows a file selected in the file manager, or the folder it lies in where no file manager can do that.
void revealFile(const FileUrl &file);

} // namespace larkspan
