#pragma once

#include <chrono>

#include "platform/Clock.h"

namespace mip {

/// Lets the message loop run now and then during a long piece of work.
class Pacer {
  public:
    explicit Pacer(Clock& clock) : clock_(clock) {}

    /// To be called after every small step; yields when the last time is long enough ago.
    void Tick() {
        const auto now = std::chrono::steady_clock::now();
        if (now - last_ >= Interval) {
            clock_.YieldToMessages();
            last_ = std::chrono::steady_clock::now();
        }
    }

  private:
    static constexpr std::chrono::milliseconds Interval{40};

    Clock& clock_;
    std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};

}  // namespace mip
