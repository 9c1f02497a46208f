#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <span>

struct evp_md_ctx_st;

namespace larkspan {

// A running SHA-256, fed in order.
class Sha256
{
public:
    using Digest = std::array<unsigned char, 32>;

    Sha256();
    ~Sha256();

    void update(std::span<const std::byte> data);
    // The digest of all that was fed. Ends the object's use.
    [[nodiscard]] Digest finish();

private:
    struct Free
    {
        void operator()(evp_md_ctx_st *context) const;
    };
    std::unique_ptr<evp_md_ctx_st, Free> m_context;
};

} // namespace larkspan
