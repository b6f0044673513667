// A one-way switch a worker polls. Set from the main thread, read from workers;
// once set it stays set. Every cancellable run gets a fresh token, and the token
// doubles as the run's identity: a late result whose token is not the current
// one is dropped on arrival.

#pragma once

#include <atomic>
#include <memory>

class CancelToken
{
public:
    void cancel() { m_flag.store(true, std::memory_order_release); }
    bool isCancelled() const { return m_flag.load(std::memory_order_acquire); }

private:
    std::atomic<bool> m_flag{false};
};

using CancelTokenPtr = std::shared_ptr<CancelToken>;

inline CancelTokenPtr makeCancelToken() { return std::make_shared<CancelToken>(); }
