// Ctrl-C (SIGINT) and SIGTERM cancel a token while this object lives; the
// handlers that were there come back when it goes. One at a time; main thread.

#pragma once

#include "core/CancelToken.h"

#include <signal.h>

// The first signal only cancels the token, so the command can stop between
// steps and say what it did; a second one ends the process at once.
class InterruptWatch
{
public:
    explicit InterruptWatch(CancelTokenPtr token);
    ~InterruptWatch();
    InterruptWatch(const InterruptWatch &) = delete;
    InterruptWatch &operator=(const InterruptWatch &) = delete;

private:
    CancelTokenPtr m_token;
    struct sigaction m_previousInt {};
    struct sigaction m_previousTerm {};
};
