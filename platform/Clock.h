#pragma once

#include <chrono>
#include <cstdint>

namespace mip {

/// Local wall-clock time to the second, as the catalogue records it.
using DateTime = std::chrono::local_seconds;

class Clock {
  public:
    virtual ~Clock() = default;

    virtual DateTime Now() = 0;
    virtual void Sleep(std::chrono::milliseconds duration) = 0;
    /// Lets the message loop handle everything that waits (repaints, timers, input), then returns.
    virtual void YieldToMessages() = 0;
};

}  // namespace mip
