#pragma once

namespace larkspan {

// Returns to the system what the process has freed in pieces, which the allocator would keep for later use: worth it
// where much was freed and little is to come. Takes some milliseconds. Any thread.
void returnFreedMemory();

} // namespace larkspan
