#include "tests/native/fakes/Faults.h"

#include <exception>

namespace mip {

void Faults::Arm(Mode mode, std::size_t n) {
    mode_ = mode;
    target_ = n;
    calls_ = 0;
    hit_ = false;
    hitOperation_.clear();
}

Faults::Verdict Faults::Next(std::string_view operation) {
    if (PowerIsOff()) {
        return Verdict::PowerOff;
    }
    ++calls_;
    const bool meant = mode_ == Mode::From ? calls_ >= target_ : calls_ == target_;
    if (mode_ == Mode::None || !meant) {
        return Verdict::Proceed;
    }
    if (!hit_) {
        hit_ = true;
        hitOperation_ = operation;
    }
    return mode_ == Mode::PowerCut ? Verdict::Cut : Verdict::Fail;
}

void Faults::Check(std::string_view operation, const std::wstring& object, std::uint32_t code) {
    if (Fails(operation)) {
        throw PlatformError(operation, object, code);
    }
}

bool Faults::Answer(Verdict verdict) {
    if (verdict == Verdict::Proceed) {
        return false;
    }
    if (verdict != Verdict::Fail && std::uncaught_exceptions() == 0) {
        throw PowerCut{};
    }
    return true;
}

void Faults::CheckPower() const {
    if (PowerIsOff() && std::uncaught_exceptions() == 0) {
        throw PowerCut{};
    }
}

}  // namespace mip
