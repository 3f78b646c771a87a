#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "platform/PlatformError.h"

namespace mip {

/// Thrown by the call at which the power goes. Not derived from std::exception, so that no error trap of the program
/// takes it for an error of its own.
struct PowerCut {};

/// Counts the calls of every fake and makes the n-th one fail. Calls that have no way to fail (the time, a drive's
/// name, a box) are not counted. For a loop over all calls see ForEveryFault.
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
    Verdict Next(std::string_view operation) {
        if (PowerIsOff()) {
            return Verdict::PowerOff;
        }
        ++calls_;
        const bool meant = mode_ == Mode::From ? calls_ >= target_ : calls_ == target_;
        if (mode_ == Mode::None || !meant) {
            return Verdict::Proceed;
        }
        if (!hit_) {
            hitOperation_ = operation;
            hit_ = true;
        }
        return mode_ == Mode::PowerCut ? Verdict::Cut : Verdict::Fail;
    }
    /// Counts the call; true when it has to give its failure answer. Throws PowerCut when the power goes or has gone;
    /// while an exception unwinds it answers true instead, so that undo steps fail in a way that they can trap.
    bool Fails(std::string_view operation) { return Answer(Next(operation)); }
    /// Counts the call and throws PlatformError when it has to fail.
    void Check(std::string_view operation, const std::wstring& object, std::uint32_t code = errors::AccessDenied) {
        Refuse(Next(operation), operation, object, code);
    }
    /// The same for a call that a power cut leaves half done: true when it has to do half, and then `EndHalf`.
    bool CheckOrHalf(std::string_view operation, const std::wstring& object) {
        const Verdict verdict = Next(operation);
        if (verdict != Verdict::Cut) {
            Refuse(verdict, operation, object, errors::AccessDenied);
        }
        return verdict == Verdict::Cut;
    }
    static void EndHalf(std::string_view operation, const std::wstring& object) {
        Refuse(Verdict::Cut, operation, object, errors::AccessDenied);
    }
    /// For calls that are not counted: throws PowerCut when the power has gone.
    void CheckPower() const { Answer(PowerIsOff() ? Verdict::PowerOff : Verdict::Proceed); }

  private:
    enum class Mode { None, Once, From, PowerCut };

    void Arm(Mode mode, std::size_t n) {
        mode_ = mode;
        target_ = n;
        calls_ = 0;
        hit_ = false;
        hitOperation_.clear();
    }

    static bool Answer(Verdict verdict) {
        if ((verdict == Verdict::Cut || verdict == Verdict::PowerOff) && std::uncaught_exceptions() == 0) {
            throw PowerCut{};
        }
        return verdict != Verdict::Proceed;
    }
    static void Refuse(Verdict verdict, std::string_view operation, const std::wstring& object, std::uint32_t code) {
        if (Answer(verdict)) {
            throw PlatformError(operation, object, code);
        }
    }

    Mode mode_ = Mode::None;
    std::size_t target_ = 0;
    std::size_t calls_ = 0;
    std::atomic<bool> hit_ = false;  // the archive's writers count calls while the owner asks for the power
    std::string hitOperation_;
};

/// The base of a fake whose calls are counted.
class Counted {
  public:
    explicit Counted(Faults& faults) : faults_(faults) {}

  protected:
    Faults& faults_;
};

/// How the n-th call fails: &Faults::FailCall, &Faults::FailFrom or &Faults::CutPowerAt.
using Arming = void (Faults::*)(std::size_t);

/// The fault loop: calls `body(arm)` for n = `first`, `first` + `step` and so on. `arm(faults)` makes the n-th call
/// from then on fail; the body runs what is tested, checks the state and returns faults.Hit(). Ends at the first run
/// that made fewer calls, and returns its n.
template <typename Body>
std::size_t ForEveryFault(Arming arming, const Body& body, std::size_t first = 1, std::size_t step = 1) {
    std::size_t n = first;
    while (body([&](Faults& faults) { (faults.*arming)(n); })) {
        n += step;
    }
    return n;
}

}  // namespace mip
