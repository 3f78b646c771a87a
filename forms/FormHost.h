#pragma once

#include <exception>
#include <optional>

#include "forms/WindowsHeader.h"

#include "app/Program.h"
#include "screens/ScreenFlow.h"

namespace mip {

/// What all forms share: the program, the order of screens, and the message loop that serves their windows.
class FormHost {
  public:
    FormHost(Program& program, Screens& screens, EndOfProgram end) : program_(program), flow_(program, screens, end) {}
    FormHost(const FormHost&) = delete;
    FormHost& operator=(const FormHost&) = delete;

    mip::Program& Program() { return program_; }
    ScreenFlow& Flow() { return flow_; }

    /// An exception must not leave a window procedure; it is kept here and goes on from the loop.
    void Keep(std::exception_ptr failure) { failure_ = failure_ ? failure_ : failure; }
    void ThrowKept();
    /// Serves messages until the program ends. Throws what a form's handler threw.
    void Run();

    /// Where the last screen stood, for the next one.
    const std::optional<POINT>& LastPlace() const { return lastPlace_; }
    void RememberPlace(POINT place) { lastPlace_ = place; }

  private:
    mip::Program& program_;
    ScreenFlow flow_;
    std::exception_ptr failure_;
    std::optional<POINT> lastPlace_;
};

}  // namespace mip
