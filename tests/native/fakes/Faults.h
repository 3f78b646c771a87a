#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/PlatformError.h"

namespace mip {

/// Thrown by the call at which the power goes. Not derived from std::exception, so that no error trap of the program
/// takes it for an error of its own.
struct PowerCut {};

/// Counts the calls of every fake and makes the n-th one fail. Calls that have no way to fail (the time, a drive's
/// name, a box) are not counted.
///
/// A fault loop:
///     for (std::size_t n = 1;; ++n) {
///         InMemoryWindows windows; ... windows.Faults.FailCall(n);
///         <run>
///         if (!windows.Faults.Hit()) break;
///         <check the state>
///     }
class Faults {
  public:
    enum class Verdict {
        Proceed,
        Fail,      ///< give the failure answer
        Cut,       ///< the power goes in the middle of this very call
        PowerOff,  ///< the power has gone: nothing may change any more
    };

    /// The n-th call from now (counted from 1) fails, once.
    void FailCall(std::size_t n) { Arm(Mode::Once, n); }
    /// The n-th call and all after it fail.
    void FailFrom(std::size_t n) { Arm(Mode::From, n); }
    /// The n-th call throws PowerCut; what comes after changes nothing, see `Fails`.
    void CutPowerAt(std::size_t n) { Arm(Mode::PowerCut, n); }
    /// No faults, power on, the count at 0.
    void Reset() { Arm(Mode::None, 0); }

    bool Hit() const { return hit_; }
    bool PowerIsOff() const { return mode_ == Mode::PowerCut && hit_; }
    std::size_t Calls() const { return calls_; }
    /// The operation that the first fault met, for messages.
    const std::string& HitOperation() const { return hitOperation_; }

    /// For callers that must not throw (code called by C libraries): counts the call and says what becomes of it.
    Verdict Next(std::string_view operation);
    /// Counts the call; true when it has to give its failure answer. Throws PowerCut when the power goes or has gone;
    /// while an exception unwinds it answers true instead, so that undo steps fail in a way that they can trap.
    bool Fails(std::string_view operation) { return Answer(Next(operation)); }
    /// Counts the call and throws PlatformError when it has to fail.
    void Check(std::string_view operation, const std::wstring& object, std::uint32_t code = errors::AccessDenied);
    /// What `Fails` does, for a verdict already asked for.
    static bool Answer(Verdict verdict);
    /// For calls that are not counted: throws PowerCut when the power has gone.
    void CheckPower() const;

  private:
    enum class Mode { None, Once, From, PowerCut };

    void Arm(Mode mode, std::size_t n);

    Mode mode_ = Mode::None;
    std::size_t target_ = 0;
    std::size_t calls_ = 0;
    bool hit_ = false;
    std::string hitOperation_;
};

}  // namespace mip
