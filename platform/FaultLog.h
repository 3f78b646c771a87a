#pragma once

#include <exception>
#include <string_view>

namespace mip {

/// Where a routine that traps an error says so, so that a failure can be explained afterwards. It never throws.
class FaultLog {
  public:
    virtual ~FaultLog() = default;

    /// `routine` says in English what was being done ("reading the setup's log"), `error` what stopped it.
    virtual void Trapped(std::string_view routine, const std::exception& error) = 0;
};

/// Forgets what it is told: for tools and tests that have no log.
class NoFaultLog final : public FaultLog {
  public:
    static FaultLog& Instance() {
        static NoFaultLog log;
        return log;
    }

    void Trapped(std::string_view, const std::exception&) override {}
};

}  // namespace mip
