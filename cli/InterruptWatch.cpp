#include "InterruptWatch.h"

#include <atomic>

namespace {

// The token of the command running, for the handler. Setting a token's flag is
// a lock-free atomic store, safe inside a signal handler.
std::atomic<CancelToken *> watched{nullptr};

extern "C" void onInterrupt(int) // NOLINT: signal handler
{
    if (CancelToken *token = watched.load())
        token->cancel();
}

} // namespace

InterruptWatch::InterruptWatch(CancelTokenPtr token) : m_token(std::move(token))
{
    watched.store(m_token.get());
    struct sigaction action {};
    action.sa_handler = onInterrupt;
    action.sa_flags = SA_RESETHAND | SA_RESTART;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, &m_previousInt);
    ::sigaction(SIGTERM, &action, &m_previousTerm);
}

InterruptWatch::~InterruptWatch()
{
    ::sigaction(SIGINT, &m_previousInt, nullptr);
    ::sigaction(SIGTERM, &m_previousTerm, nullptr);
    watched.store(nullptr);
}
