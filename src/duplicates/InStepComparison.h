// Proves which of a few files of one length are identical by reading them side
// by side, block by block, and parting them wherever their blocks differ. A
// byte comparison proves more than equal digests do; only one file of each set
// that still agrees is hashed, so a copy costs one read and no hashing, and the
// id of a set is still the SHA-256 of its content. Reads only; runs on the
// calling thread.

#pragma once

#include "core/CancelToken.h"

#include <QByteArray>

#include <functional>
#include <optional>
#include <vector>

namespace InStepComparison {

// At most this many files are read side by side: their blocks stay in memory
// together, within `memoryBudget` bytes.
inline constexpr size_t maxFiles = 64;
inline constexpr qint64 memoryBudget = 16 * 1024 * 1024;
// Small enough that a block is still in the processor's cache when it is
// compared and hashed.
inline constexpr qint64 minBlock = 64 * 1024;
inline constexpr qint64 maxBlock = 256 * 1024;

struct Set {
    QByteArray digest;           // SHA-256 of the content, lower-case hex
    std::vector<size_t> members; // indices into the paths given, ascending
};

struct Outcome {
    std::vector<Set> sets; // of two or more files, in the order of their first member
    struct Failure {
        size_t member = 0;
        int error = 0; // errno; 0 when the path was no regular file
    };
    std::vector<Failure> unreadable; // in the order met
};

// Compares the files at `paths`, all of `length` bytes when they were listed.
// `onBytes` is told the bytes each step covered, read or no longer needed, so
// that they add up to `length` for every file. Absent when `token` is cancelled.
std::optional<Outcome> compare(const std::vector<QByteArray> &paths, qint64 length, const CancelToken &token,
                               const std::function<void(qint64)> &onBytes);

} // namespace InStepComparison
