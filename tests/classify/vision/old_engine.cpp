// An inference engine that is older than the headers, or with NO_ENGINE a library that is none at all.
#include <cstdint>

#include <onnxruntime_c_api.h>

#ifndef NO_ENGINE

namespace {

const OrtApi *noInterface(std::uint32_t /*version*/) noexcept
{
    return nullptr;
}

const char *oldVersion() noexcept
{
    return "1.0.0";
}

constexpr OrtApiBase oldEngine{noInterface, oldVersion};

} // namespace

const OrtApiBase *OrtGetApiBase() noexcept
{
    return &oldEngine;
}

#endif
