#pragma once

#include "state/AppState.h"

#include <QDeadlineTimer>
#include <QMutex>
#include <QWaitCondition>

#include <memory>
#include <vector>

// A scanner a test steers from outside. Each call blocks its worker until the
// test releases it with the result to return, so a test decides when, and in
// which order, scans end. Destroying it releases every run with no result, so
// the state's workers can always return: keep it declared after the state.
class FakeScanner
{
public:
    struct Run {
        QByteArray root;
        ScanOptions options;
        qint64 firstID = 0;
        CancelTokenPtr token;
        std::function<void(const ScanProgress &)> progress;
        bool released = false;
        ScanResultPtr answer;
    };

    FakeScanner() : m_shared(std::make_shared<Shared>()) {}
    ~FakeScanner() { releaseAll(); }

    AppState::ScanFunction function()
    {
        return [shared = m_shared](const QByteArray &root, const ScanOptions &options, qint64 firstID,
                                   const CancelTokenPtr &token,
                                   const std::function<void(const ScanProgress &)> &progress) {
            auto run = std::make_shared<Run>(Run{root, options, firstID, token, progress, false, {}});
            QMutexLocker lock(&shared->mutex);
            run->released = shared->closed;
            shared->runs.push_back(run);
            shared->changed.wakeAll();
            while (!run->released)
                shared->changed.wait(&shared->mutex);
            return run->answer;
        };
    }

    // Waits until `count` runs have started; false on timeout.
    bool waitForRuns(int count, int ms = 5000)
    {
        QDeadlineTimer deadline(ms);
        QMutexLocker lock(&m_shared->mutex);
        while (int(m_shared->runs.size()) < count)
            if (!m_shared->changed.wait(&m_shared->mutex, deadline))
                return false;
        return true;
    }

    int runCount()
    {
        QMutexLocker lock(&m_shared->mutex);
        return int(m_shared->runs.size());
    }

    std::shared_ptr<Run> run(int index)
    {
        QMutexLocker lock(&m_shared->mutex);
        return m_shared->runs.at(size_t(index));
    }

    // Lets run `index` return `answer`.
    void release(int index, ScanResultPtr answer)
    {
        QMutexLocker lock(&m_shared->mutex);
        auto &run = m_shared->runs.at(size_t(index));
        run->answer = std::move(answer);
        run->released = true;
        m_shared->changed.wakeAll();
    }

    void releaseAll()
    {
        QMutexLocker lock(&m_shared->mutex);
        m_shared->closed = true;
        for (auto &run : m_shared->runs)
            run->released = true;
        m_shared->changed.wakeAll();
    }

private:
    struct Shared {
        QMutex mutex;
        QWaitCondition changed;
        std::vector<std::shared_ptr<Run>> runs;
        bool closed = false; // runs that start from now on return at once
    };
    std::shared_ptr<Shared> m_shared;
};
