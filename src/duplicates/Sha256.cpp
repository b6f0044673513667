#include "Sha256.h"

#include <openssl/evp.h>

namespace {

const EVP_MD *algorithm()
{
#if OPENSSL_VERSION_NUMBER >= 0x30000000L
    // Fetched once: an implicit fetch on every EVP_DigestInit_ex costs a lookup.
    static EVP_MD *const md = EVP_MD_fetch(nullptr, "SHA256", nullptr);
    if (md)
        return md;
#endif
    return EVP_sha256();
}

} // namespace

Sha256::Sha256() : m_ctx(EVP_MD_CTX_new()) { reset(); }

Sha256::Sha256(const Sha256 &other) : m_ctx(EVP_MD_CTX_new()) { EVP_MD_CTX_copy_ex(m_ctx, other.m_ctx); }

Sha256::Sha256(Sha256 &&other) noexcept : m_ctx(other.m_ctx) { other.m_ctx = nullptr; }

Sha256::~Sha256() { EVP_MD_CTX_free(m_ctx); }

void Sha256::reset() { EVP_DigestInit_ex(m_ctx, algorithm(), nullptr); }

void Sha256::add(const char *data, qint64 length) { EVP_DigestUpdate(m_ctx, data, size_t(length)); }

QByteArray Sha256::finish()
{
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    EVP_DigestFinal_ex(m_ctx, digest, &length);
    return QByteArray(reinterpret_cast<const char *>(digest), int(length)).toHex();
}
