#include "DuplicateEngine.h"

#include "ContentHasher.h"
#include "InStepComparison.h"
#include "StorageProbe.h"

#include "core/Fmt.h"

#include <QCoreApplication>
#include <QHash>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>

namespace DuplicateEngine {

namespace {

QString fingerprintStatus(qint64 n, qint64 total)
{
    return QCoreApplication::translate("DuplicateEngine", "Fingerprinting files… %1 of %2")
        .arg(QString::number(n), QString::number(total));
}

QString verifyStatus(qint64 bytes, qint64 total)
{
    return QCoreApplication::translate("DuplicateEngine", "Verifying contents… %1 of %2")
        .arg(Fmt::bytes(std::max<qint64>(bytes, 0)), Fmt::bytes(std::max<qint64>(total, 0)));
}

// Lists of values under keys, the lists kept in the order their keys first came.
template <typename T>
class OrderedBuckets
{
public:
    void add(const QByteArray &key, T value)
    {
        const auto it = m_index.constFind(key);
        if (it != m_index.constEnd()) {
            m_lists[*it].second.push_back(std::move(value));
            return;
        }
        m_index.insert(key, m_lists.size());
        m_lists.push_back({key, {std::move(value)}});
    }
    const std::vector<std::pair<QByteArray, std::vector<T>>> &lists() const { return m_lists; }
    std::vector<std::pair<QByteArray, std::vector<T>>> take() { return std::move(m_lists); }

private:
    QHash<QByteArray, size_t> m_index;
    std::vector<std::pair<QByteArray, std::vector<T>>> m_lists;
};

// A file whose sample matched another's. `whole` when the sample already
// covered all of it: its whole-file digest is then its set's sample digest.
struct Suspect {
    const FileItem *file = nullptr;
    qint64 wholeBytes = 0;
    bool whole = false;
};

// Files whose samples agree, and the digest of that sample.
struct SuspectSet {
    QByteArray print;
    std::vector<Suspect> members;
};

// What sampling one file gave; absent when it could not be read (`error` says why).
struct Sampled {
    std::optional<ContentHasher::Fingerprint> print;
    int error = 0;
};

// What hashing one whole file gave: its digest, absent when it could not be
// read (`error` says why) or the search was cancelled, and how many bytes it covered.
struct Outcome {
    std::optional<QByteArray> digest;
    qint64 bytes = 0;
    int error = 0;
};

struct Job {
    QByteArray path;
    ContentHasher::Form form = ContentHasher::Form::bytes;
};

// Works through a fixed list of jobs on a few threads of its own, ahead of a
// reader that takes the results strictly in list order. Each thread keeps one
// `Context` for all its jobs. The threads run at most `window` jobs ahead of the
// reader, so results waiting to be taken stay few however long the list; a
// reader that catches up sleeps until a batch more is ready, not for each job.
// Once abandoned, the threads do no more work but still settle every job (with
// a default result), so no take() waits forever; `work` itself gives up early
// once the search is cancelled.
template <typename Context, typename Result>
class OrderedPool
{
public:
    using Work = std::function<Result(Context &, size_t)>;
    static constexpr size_t defaultWindow = 1024;

    OrderedPool(size_t count, int threads, Work work, size_t window = defaultWindow)
        : m_work(std::move(work)), m_count(count), m_window(std::clamp<size_t>(window, 2, std::max<size_t>(count, 2))),
          m_batch(std::max<size_t>(1, m_window / 8)), m_results(m_window), m_slotOf(m_window, none)
    {
        for (int i = 0; i < threads; ++i) {
            m_threads.emplace_back(QThread::create([this] { run(); }));
            m_threads.back()->start();
        }
    }

    ~OrderedPool()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_abandoned = true;
        }
        m_room.notify_all();
        for (const auto &thread : m_threads)
            thread->wait();
    }

    Result take(size_t index)
    {
        std::unique_lock lock(m_mutex);
        if (m_settled <= index) {
            m_wanted = std::min(m_count, index + m_batch);
            if (m_idle > 0)
                m_room.notify_all();
            m_readerWaits = true;
            m_ready.wait(lock, [&] { return m_settled >= m_wanted; });
            m_readerWaits = false;
        }
        Result result = std::move(m_results[index % m_window]);
        m_taken = index + 1;
        if (m_idle > 0 && (m_taken % m_batch == 0 || m_taken == m_count))
            m_room.notify_all();
        return result;
    }

private:
    static constexpr size_t none = size_t(-1);

    void run()
    {
        Context context;
        for (size_t i = m_next.fetch_add(1); i < m_count; i = m_next.fetch_add(1)) {
            bool abandoned = false;
            {
                std::unique_lock lock(m_mutex);
                if (i >= m_taken + m_window && !m_abandoned) {
                    ++m_idle;
                    m_room.wait(lock, [&] { return m_abandoned || i < m_taken + m_window; });
                    --m_idle;
                }
                abandoned = m_abandoned;
            }
            Result result = abandoned ? Result{} : m_work(context, i);
            bool wake = false;
            {
                const std::lock_guard lock(m_mutex);
                m_results[i % m_window] = std::move(result);
                m_slotOf[i % m_window] = i;
                while (m_settled < m_count && m_slotOf[m_settled % m_window] == m_settled)
                    ++m_settled;
                wake = m_readerWaits && m_settled >= m_wanted;
                if (wake)
                    m_readerWaits = false;
            }
            if (wake)
                m_ready.notify_one();
        }
    }

    const Work m_work;
    const size_t m_count;
    const size_t m_window;
    const size_t m_batch;
    std::vector<Result> m_results; // job i in slot i % m_window
    std::vector<size_t> m_slotOf;  // which job's result each slot holds
    std::mutex m_mutex;
    std::condition_variable m_ready; // for the reader
    std::condition_variable m_room;  // for threads a window ahead
    size_t m_settled = 0;            // jobs 0...m_settled - 1 have results
    size_t m_wanted = 0;             // what the reader waits for
    size_t m_taken = 0;
    size_t m_idle = 0; // threads waiting for room
    bool m_readerWaits = false;
    bool m_abandoned = false;
    std::atomic<size_t> m_next{0};
    std::vector<std::unique_ptr<QThread>> m_threads;
};

// What comparing one set in step gave, and the bytes it covered.
struct InStepResult {
    std::optional<InStepComparison::Outcome> outcome;
    qint64 bytes = 0;
};

struct NoContext {};

bool newerFirst(const FileItem &a, const FileItem &b) { return a.modified > b.modified; }
bool newerFirstOf(const FileItem *a, const FileItem *b) { return a->modified > b->modified; }

void addUnreadable(Unreadable &unreadable, const QByteArray &path, int error)
{
    ++unreadable.count;
    if (unreadable.samples.size() < Unreadable::maxSamples)
        unreadable.samples.push_back({path, error});
}

// Files that agree so far are hashed in one form, so that a sparse copy and a
// written-out one still meet.
ContentHasher::Form formOf(const std::vector<Suspect> &group)
{
    const bool sparse = std::any_of(group.begin(), group.end(), [](const Suspect &s) {
        return !s.whole && s.file->logicalSize >= sparseFloor && s.file->size < s.file->logicalSize / 2;
    });
    return sparse ? ContentHasher::Form::zeroRuns : ContentHasher::Form::bytes;
}

} // namespace

std::optional<std::vector<DuplicateGroup>> find(const std::vector<FileItem> &files, const CancelTokenPtr &tokenPtr,
                                                const ProgressCallback &progress, Reading reading,
                                                Unreadable *unreadableOut)
{
    const CancelTokenPtr token = tokenPtr ? tokenPtr : makeCancelToken();
    Unreadable unreadable;
    const auto answer = [&](std::vector<DuplicateGroup> groups) -> std::optional<std::vector<DuplicateGroup>> {
        if (token->isCancelled())
            return std::nullopt;
        if (unreadableOut)
            *unreadableOut = std::move(unreadable);
        return groups;
    };
    const auto report = [&](double fraction, const QString &status) {
        if (progress)
            progress(fraction, status);
    };

    // Stage 1: sizes. Size groups keep the order of their first file.
    QHash<qint64, size_t> sizeIndex;
    std::vector<std::vector<const FileItem *>> bySize;
    for (const FileItem &file : files) {
        const auto it = sizeIndex.constFind(file.logicalSize);
        if (it != sizeIndex.constEnd()) {
            bySize[*it].push_back(&file);
        } else {
            sizeIndex.insert(file.logicalSize, bySize.size());
            bySize.push_back({&file});
        }
    }
    qint64 total = 0;
    for (const auto &group : bySize)
        total += group.size() >= 2 ? qint64(group.size()) : 0;
    if (total == 0)
        return answer({});

    // Stage 2: fingerprints of samples. Where seeks cost nothing a pool samples
    // the files ahead of this thread, which takes the prints in the same order.
    std::vector<const FileItem *> toSample;
    toSample.reserve(size_t(total));
    for (const auto &group : bySize)
        if (group.size() >= 2)
            toSample.insert(toSample.end(), group.begin(), group.end());
    const int threads = std::clamp(QThread::idealThreadCount(), 2, 4);
    const auto sampleSeekFree = [&toSample] {
        // Some files spread over the list stand for all: stating every one of a
        // million candidates would cost more than the samples themselves.
        constexpr size_t probes = 64;
        std::vector<QByteArray> paths;
        const size_t step = std::max<size_t>(1, toSample.size() / probes);
        for (size_t i = 0; i < toSample.size(); i += step)
            paths.push_back(toSample[i]->path);
        return StorageProbe::allSeekFree(paths);
    };
    std::unique_ptr<OrderedPool<ContentHasher, Sampled>> samplePool;
    if (toSample.size() >= 2 * reportEvery &&
        (reading == Reading::pooled || (reading == Reading::automatic && sampleSeekFree()))) {
        samplePool = std::make_unique<OrderedPool<ContentHasher, Sampled>>(
            toSample.size(), threads, [&toSample, &token](ContentHasher &worker, size_t i) {
                Sampled sampled;
                if (!token->isCancelled()) {
                    sampled.print = worker.fingerprint(toSample[i]->path, toSample[i]->logicalSize);
                    sampled.error = worker.error();
                }
                return sampled;
            });
    }
    ContentHasher hasher;
    qint64 n = 0;
    std::vector<SuspectSet> suspects;
    for (const auto &group : bySize) {
        if (group.size() < 2)
            continue;
        OrderedBuckets<Suspect> prints;
        for (const FileItem *file : group) {
            if (token->isCancelled())
                return std::nullopt;
            Sampled sampled;
            if (samplePool) {
                sampled = samplePool->take(size_t(n));
            } else {
                sampled.print = hasher.fingerprint(file->path, file->logicalSize);
                sampled.error = hasher.error();
            }
            if (sampled.print) {
                const bool whole = sampled.print->whole;
                prints.add(sampled.print->digest, Suspect{file, whole ? sampled.print->bytes : 0, whole});
            } else {
                addUnreadable(unreadable, file->path, sampled.error);
            }
            ++n;
            if (n % reportEvery == 0)
                report(0.2 * double(n) / double(std::max<qint64>(total, 1)), fingerprintStatus(n, total));
        }
        for (auto &[print, list] : prints.take()) {
            if (list.size() >= 2)
                suspects.push_back({print, std::move(list)});
        }
    }
    samplePool.reset();
    if (token->isCancelled())
        return std::nullopt;
    if (suspects.empty())
        return answer({});

    // Stage 3: whole contents. Files whose sample was all of them are not read again.
    // Where seeks cost something, reading side by side would seek between the
    // files at every block: there every file is hashed, one after the other.
    std::optional<bool> allSeekFree;
    const auto seekFree = [&] {
        if (!allSeekFree) {
            std::vector<QByteArray> paths;
            for (const auto &set : suspects)
                for (const Suspect &suspect : set.members)
                    if (!suspect.whole)
                        paths.push_back(suspect.file->path);
            allSeekFree = StorageProbe::allSeekFree(paths);
        }
        return *allSeekFree;
    };
    const auto comparedInStep = [&](const std::vector<Suspect> &group, ContentHasher::Form form) {
        return (reading == Reading::inStep || (reading == Reading::automatic && seekFree())) &&
               form == ContentHasher::Form::bytes && group.size() <= InStepComparison::maxFiles &&
               std::none_of(group.begin(), group.end(), [](const Suspect &s) { return s.whole; });
    };
    qint64 totalBytes = 0;
    std::vector<Job> toRead;
    std::vector<ContentHasher::Form> forms;
    std::vector<bool> inStep;
    for (const auto &set : suspects) {
        forms.push_back(formOf(set.members));
        inStep.push_back(comparedInStep(set.members, forms.back()));
        for (const Suspect &suspect : set.members) {
            totalBytes = saturatingAdd(totalBytes, suspect.file->logicalSize);
            if (!suspect.whole && !inStep.back())
                toRead.push_back({suspect.file->path, forms.back()});
        }
    }
    const bool pooled =
        toRead.size() >= 2 && (reading == Reading::pooled || (reading == Reading::automatic && seekFree()));
    std::unique_ptr<OrderedPool<ContentHasher, Outcome>> pool;
    if (pooled) {
        pool = std::make_unique<OrderedPool<ContentHasher, Outcome>>(
            toRead.size(), int(std::min<size_t>(size_t(threads), toRead.size())),
            [&toRead, &token](ContentHasher &worker, size_t i) {
                Outcome outcome;
                if (!token->isCancelled()) {
                    outcome.digest = worker.fullHash(
                        toRead[i].path, *token, [&](qint64 count) { outcome.bytes += count; }, toRead[i].form);
                    outcome.error = worker.error();
                }
                return outcome;
            });
    }
    // Sets compared in step, each set on one thread, several sets at once where
    // the search chose it; otherwise one after the other on this thread.
    std::vector<size_t> inStepSets;
    for (size_t g = 0; g < suspects.size(); ++g)
        if (inStep[g])
            inStepSets.push_back(g);
    const auto pathsOf = [&suspects](size_t g) {
        std::vector<QByteArray> paths;
        paths.reserve(suspects[g].members.size());
        for (const Suspect &suspect : suspects[g].members)
            paths.push_back(suspect.file->path);
        return paths;
    };
    std::unique_ptr<OrderedPool<NoContext, InStepResult>> inStepPool;
    if (reading == Reading::automatic && inStepSets.size() >= 2) {
        inStepPool = std::make_unique<OrderedPool<NoContext, InStepResult>>(
            inStepSets.size(), int(std::min<size_t>(size_t(threads), inStepSets.size())), [&](NoContext &, size_t i) {
                InStepResult result;
                const size_t g = inStepSets[i];
                result.outcome = InStepComparison::compare(pathsOf(g), suspects[g].members.front().file->logicalSize,
                                                           *token, [&result](qint64 count) { result.bytes += count; });
                return result;
            });
    }
    size_t nextInStep = 0;

    qint64 bytes = 0;
    size_t next = 0;
    std::vector<DuplicateGroup> groups;
    QHash<QString, size_t> groupIndex;
    const auto reportVerifying = [&] {
        report(0.2 + 0.8 * double(bytes) / double(std::max<qint64>(totalBytes, 1)), verifyStatus(bytes, totalBytes));
    };
    for (size_t g = 0; g < suspects.size(); ++g) {
        const auto &group = suspects[g].members;
        OrderedBuckets<const FileItem *> digests;
        if (inStep[g]) {
            const std::vector<QByteArray> paths = pathsOf(g);
            std::optional<InStepComparison::Outcome> outcome;
            if (inStepPool) {
                // Reported when the set is done, as a pooled hash is.
                InStepResult result = inStepPool->take(nextInStep++);
                outcome = std::move(result.outcome);
                bytes += result.bytes;
            } else {
                // Reported as every 4 MiB more is covered, and when the set is done.
                qint64 reported = bytes;
                outcome = InStepComparison::compare(paths, group.front().file->logicalSize, *token, [&](qint64 count) {
                    bytes += count;
                    if (bytes - reported >= ContentHasher::chunkSize && !token->isCancelled()) {
                        reported = bytes;
                        reportVerifying();
                    }
                });
            }
            if (!outcome || token->isCancelled())
                return std::nullopt;
            for (const auto &failure : outcome->unreadable)
                addUnreadable(unreadable, paths[failure.member], failure.error);
            for (const InStepComparison::Set &set : outcome->sets)
                for (const size_t member : set.members)
                    digests.add(set.digest, group[member].file);
            reportVerifying();
        }
        // Otherwise files whose sample was all of them are known already, at one
        // report for all of them, and every other file is hashed whole.
        static const std::vector<Suspect> none;
        bool anyWhole = false;
        for (const Suspect &suspect : inStep[g] ? none : group) {
            if (suspect.whole) {
                digests.add(suspects[g].print, suspect.file);
                bytes += suspect.wholeBytes;
                anyWhole = true;
            }
        }
        if (anyWhole) {
            if (token->isCancelled())
                return std::nullopt;
            reportVerifying();
        }
        for (const Suspect &suspect : inStep[g] ? none : group) {
            if (suspect.whole)
                continue;
            std::optional<QByteArray> digest;
            int error = 0;
            if (pool) {
                Outcome outcome = pool->take(next++);
                digest = std::move(outcome.digest);
                bytes += outcome.bytes;
                error = outcome.error;
            } else {
                digest = hasher.fullHash(
                    suspect.file->path, *token, [&](qint64 count) { bytes += count; }, forms[g]);
                error = hasher.error();
                ++next;
            }
            if (token->isCancelled())
                return std::nullopt;
            if (!digest) {
                addUnreadable(unreadable, suspect.file->path, error);
                continue;
            }
            digests.add(*digest, suspect.file);
            reportVerifying();
        }
        for (const auto &[digest, list] : digests.lists()) {
            if (list.size() < 2)
                continue;
            const QString id = QString::fromLatin1(digest);
            const auto known = groupIndex.constFind(id);
            // Equal digests under two sizes mean a file changed while it was read;
            // one group per digest all the same.
            DuplicateGroup *target = nullptr;
            if (known != groupIndex.constEnd()) {
                target = &groups[*known];
            } else {
                groupIndex.insert(id, groups.size());
                target = &groups.emplace_back();
                target->id = id;
                target->size = list.front()->size;
            }
            if (target->files.empty()) {
                // Sorted as pointers, then copied once in place.
                std::vector<const FileItem *> sorted = list;
                std::stable_sort(sorted.begin(), sorted.end(), newerFirstOf);
                target->files.reserve(sorted.size());
                for (const FileItem *file : sorted)
                    target->files.push_back(*file);
            } else {
                for (const FileItem *file : list)
                    target->files.push_back(*file);
                std::stable_sort(target->files.begin(), target->files.end(), newerFirst);
            }
        }
    }
    pool.reset();
    inStepPool.reset();

    std::stable_sort(groups.begin(), groups.end(), [](const DuplicateGroup &a, const DuplicateGroup &b) {
        return a.reclaimable() > b.reclaimable();
    });
    return answer(std::move(groups));
}

} // namespace DuplicateEngine
