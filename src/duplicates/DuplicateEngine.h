// Proves which files have identical contents. No state: everything it knows
// comes in through its arguments, and it only ever reads files. Runs on the
// calling thread, a worker.

#pragma once

#include "DuplicateGroup.h"

#include "core/CancelToken.h"
#include "core/FileItem.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

// Three stages, each cheap enough to reject what the next would pay dearly for:
//  1. equal logical sizes;
//  2. a SHA-256 of samples: the first 64 KiB, and from 131,073 bytes on also the
//     last 64 KiB (a file of 64 KiB or less is thereby hashed whole, and its
//     sample digest is its whole-file digest);
//  3. the whole of each file left: compared in step with the others and the
//     SHA-256 of one of each equal set, or a SHA-256 of each file in 4 MiB reads
//     (for files that agree with a sparse one, of ContentHasher's zero-run form).
// Only equal whole contents make duplicates. Samples are read as bytes, holes
// included, so stage 2 never parts what stage 3 would join.
namespace DuplicateEngine {

// Given a fraction 0...1 and a status text. Called on the searching thread; it
// must get the report to wherever it is shown without waiting.
using ProgressCallback = std::function<void(double fraction, const QString &status)>;

// How stage 3 reads. In step: the files of a set that agree so far are read side
// by side and compared byte by byte, and only one of each set that stays equal
// is hashed (InStepComparison); a set of more than 64 files, or one with a sparse
// file, is hashed file by file instead. In step suits storage where seeks cost
// nothing; on a spinning disk every file is hashed, one at a time, so the disk
// keeps streaming. A small pool works on several sets or files at once where
// seeks cost nothing. Every way finds the same groups in the same order; one at
// a time and pooled give the same progress reports too.
enum class Reading {
    automatic,  // where every file to read is on non-rotating storage or cached: in step, several
                // sets at once, and the rest by a pool; elsewhere one at a time
    inStep,     // in step, one set after the other; the rest one at a time
    oneAtATime, // every file hashed whole, one after the other
    pooled,     // every file hashed whole, by a pool
};

// Stage 2 reports after every 50th file.
inline constexpr qint64 reportEvery = 50;

// From this length on, files of which some copy allocates less than half its
// length are compared in ContentHasher's zero-run form, so holes are not read.
// Their group id is then the digest of that form, not of the bytes.
inline constexpr qint64 sparseFloor = 1024 * 1024;

// Files that had to be compared but could not be read (gone, refused, no
// regular file, a failed read): they are in no group, whatever their content.
struct Unreadable {
    struct Sample {
        QByteArray path;
        int error = 0; // errno; 0 when the path was no regular file
    };
    static constexpr size_t maxSamples = 5;
    qint64 count = 0;
    std::vector<Sample> samples; // the first few, in the order met
};

// The groups of identical files among `files`, largest saving first (equal
// savings in the order found), each group's files newest first. Files that
// can't be read drop out of the groups and are counted in `unreadable`, if
// given. Absent when `token` is cancelled at any moment before the answer is
// ready; never a partial list.
std::optional<std::vector<DuplicateGroup>> find(const std::vector<FileItem> &files, const CancelTokenPtr &token,
                                                const ProgressCallback &progress, Reading reading = Reading::automatic,
                                                Unreadable *unreadable = nullptr);

} // namespace DuplicateEngine
