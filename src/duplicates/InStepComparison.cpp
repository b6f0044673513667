#include "InStepComparison.h"

#include "FileReads.h"
#include "Sha256.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>

namespace InStepComparison {

namespace {

// Files that agree up to the current offset, and the digest of what they hold
// up to it.
struct Agreeing {
    std::vector<size_t> members;
    Sha256 hash;
};

// Files whose block at the current offset is the `length` bytes of `block`.
struct Branch {
    QByteArray block;
    qint64 length = 0;
    std::vector<size_t> members;
};

} // namespace

std::optional<Outcome> compare(const std::vector<QByteArray> &paths, qint64 length, const CancelToken &token,
                               const std::function<void(qint64)> &onBytes)
{
    const auto covered = [&onBytes](qint64 bytes) {
        if (onBytes && bytes > 0)
            onBytes(bytes);
    };
    Outcome outcome;
    std::vector<FileReads::Fd> files;
    files.reserve(paths.size());
    std::vector<size_t> opened;
    for (size_t i = 0; i < paths.size(); ++i) {
        qint64 current = 0;
        int error = 0;
        files.emplace_back(FileReads::openRegular(paths[i], current, error));
        if (files.back().fd < 0) {
            outcome.unreadable.push_back({i, error});
            covered(length);
            continue;
        }
#ifdef POSIX_FADV_SEQUENTIAL
        ::posix_fadvise(files.back().fd, 0, 0, POSIX_FADV_SEQUENTIAL);
#endif
        opened.push_back(i);
    }
    if (opened.size() < 2) {
        covered(length * qint64(opened.size()));
        return outcome;
    }

    const qint64 block = std::clamp(memoryBudget / qint64(opened.size()), minBlock, maxBlock);
    // Blocks are read into buffers that are kept and used again: a block that
    // matches one already read costs no copy, and no buffer is made twice.
    std::vector<QByteArray> spare;
    const auto buffer = [&spare, block] {
        if (spare.empty())
            return QByteArray(block, Qt::Uninitialized);
        QByteArray taken = std::move(spare.back());
        spare.pop_back();
        return taken;
    };
    std::vector<Agreeing> agreeing;
    agreeing.push_back({std::move(opened), Sha256()});
    for (qint64 offset = 0; !agreeing.empty(); offset += block) {
        std::vector<Agreeing> next;
        for (Agreeing &set : agreeing) {
            std::vector<Branch> branches;
            for (const size_t member : set.members) {
                if (token.isCancelled())
                    return std::nullopt;
                QByteArray read = buffer();
                const FileReads::ReadResult got = FileReads::readAt(files[member].fd, read.data(), block, offset);
                if (got.failed) {
                    outcome.unreadable.push_back({member, errno});
                    covered(length - offset);
                    spare.push_back(std::move(read));
                    continue;
                }
                covered(got.bytes);
                const auto same = std::find_if(branches.begin(), branches.end(), [&](const Branch &branch) {
                    return branch.length == got.bytes &&
                           std::memcmp(branch.block.constData(), read.constData(), size_t(got.bytes)) == 0;
                });
                if (same != branches.end()) {
                    same->members.push_back(member);
                    spare.push_back(std::move(read));
                } else {
                    branches.push_back({std::move(read), got.bytes, {member}});
                }
            }
            for (Branch &branch : branches) {
                const qint64 read = branch.length;
                if (branch.members.size() < 2) {
                    // A file alone has no twin: the rest of it needn't be read.
                    covered(length - offset - read);
                } else {
                    // One branch goes on with the set's digest; several each take a copy.
                    Agreeing part = branches.size() == 1 ? Agreeing{std::move(branch.members), std::move(set.hash)}
                                                         : Agreeing{std::move(branch.members), Sha256(set.hash)};
                    part.hash.add(branch.block.constData(), read);
                    if (read < block)
                        outcome.sets.push_back({part.hash.finish(), std::move(part.members)});
                    else
                        next.push_back(std::move(part));
                }
                spare.push_back(std::move(branch.block));
            }
        }
        agreeing = std::move(next);
    }
    std::sort(outcome.sets.begin(), outcome.sets.end(),
              [](const Set &a, const Set &b) { return a.members.front() < b.members.front(); });
    return outcome;
}

} // namespace InStepComparison
