#pragma once

#include <utility>

namespace mip {

/// Undoes a step when its scope is left before `Dismiss`. The action must not throw.
template <typename Action>
class ScopeGuard {
  public:
    explicit ScopeGuard(Action action) : action_(std::move(action)) {}
    ScopeGuard(const ScopeGuard&) = delete;
    ScopeGuard& operator=(const ScopeGuard&) = delete;
    ~ScopeGuard() {
        if (armed_) {
            action_();
        }
    }

    void Dismiss() noexcept { armed_ = false; }

  private:
    Action action_;
    bool armed_ = true;
};

}  // namespace mip
