#include "output/Sha256.h"

#include <stdexcept>

#include <openssl/evp.h>

namespace larkspan {

namespace {

// A library without SHA-256 is a broken installation, and no state in which to judge footage.
void require(bool worked)
{
    if (!worked) {
        throw std::runtime_error("SHA-256 is not available");
    }
}

} // namespace

void Sha256::Free::operator()(evp_md_ctx_st *context) const
{
    EVP_MD_CTX_free(context);
}

Sha256::Sha256() : m_context(EVP_MD_CTX_new())
{
    require(m_context && EVP_DigestInit_ex(m_context.get(), EVP_sha256(), nullptr) == 1);
}

Sha256::~Sha256() = default;

void Sha256::update(std::span<const std::byte> data)
{
    require(EVP_DigestUpdate(m_context.get(), data.data(), data.size()) == 1);
}

Sha256::Digest Sha256::finish()
{
    Digest digest{};
    require(EVP_DigestFinal_ex(m_context.get(), digest.data(), nullptr) == 1);
    return digest;
}

} // namespace larkspan
