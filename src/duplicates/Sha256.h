// An incremental SHA-256 over OpenSSL's libcrypto that can be copied midway:
// files that agree up to a point share the digest of that prefix, and a copy
// goes on from there for the one that parts.

#pragma once

#include <QByteArray>

struct evp_md_ctx_st;

class Sha256
{
public:
    Sha256();
    Sha256(const Sha256 &other); // the same state, to go on separately
    Sha256(Sha256 &&other) noexcept;
    Sha256 &operator=(const Sha256 &) = delete;
    ~Sha256();

    // Starts over, as a new hash; the context is kept.
    void reset();
    void add(const char *data, qint64 length);
    // The digest in lower-case hex. Ends this hash.
    QByteArray finish();

private:
    evp_md_ctx_st *m_ctx;
};
