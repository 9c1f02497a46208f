#pragma once

#include <filesystem>

#include <tl/expected.hpp>

#include "classify/vision/InferenceSession.h"

struct OrtApi;

namespace larkspan {

// Returns the path of the engine's library that ships with the program, in the prefix or build folder that also has its
// shippedFiles().
[[nodiscard]] std::filesystem::path shippedInferenceEngine();

// Loads the library of the engine and returns its functions, which are valid to the end of the process. The error names
// the library. Nothing links it: it would slow down every start and take memory even in the launcher. Any thread.
[[nodiscard]] tl::expected<const OrtApi *, ModelError> loadInferenceEngine(const std::filesystem::path &library);

} // namespace larkspan
