#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "app/Switches.h"

namespace mip {

/// A switch that is unknown, incomplete, in the way of another, or given without its companion.
class BadSwitch : public std::runtime_error {
  public:
    BadSwitch(std::wstring text, Switches others)
        : std::runtime_error("bad command-line switch"), text_(std::move(text)), others_(std::move(others)) {}
    const std::wstring& Text() const { return text_; }
    /// What the other switches say: a quiet run's bad switch belongs in its log.
    const Switches& Others() const { return others_; }

  private:
    std::wstring text_;
    Switches others_;
};

/// Reads the arguments after the program's name. Names are compared without regard to case; values keep theirs and may
/// be quoted. Throws BadSwitch for the first bad one.
Switches ReadSwitches(const std::vector<std::wstring>& arguments);

}  // namespace mip
