#pragma once

#include <chrono>

#include "text/DateTime.h"

namespace mip {

class Clock {
  public:
    virtual ~Clock() = default;

    virtual DateTime Now() = 0;
    virtual void Sleep(std::chrono::milliseconds duration) = 0;
    /// Lets the message loop handle everything that waits (repaints, timers, input), then returns.
    virtual void YieldToMessages() = 0;
};

}  // namespace mip
