#pragma once

#include <array>
#include <cstddef>

#include "install/InstallationView.h"

namespace mip {

/// The three bars of the progress screen and the rules by which they move.
class ProgressBars {
  public:
    explicit ProgressBars(InstallationView& view) : view_(view) {}

    /// Makes all bars invisible and disabled.
    void HideAll();
    /// Shows a bar with this range and value.
    void Start(Bar bar, float minimum, float maximum, float value);
    void SetValue(Bar bar, float value);
    void Hide(Bar bar);
    /// Moves an enabled bar on by `amount` while its value is below `limit`.
    void Creep(Bar bar, float amount, float limit);

    const BarState& State(Bar bar) const { return bars_[static_cast<std::size_t>(bar)]; }

  private:
    BarState& At(Bar bar) { return bars_[static_cast<std::size_t>(bar)]; }
    void Show(Bar bar) { view_.SetBar(bar, State(bar)); }

    InstallationView& view_;
    std::array<BarState, 3> bars_;
};

}  // namespace mip
