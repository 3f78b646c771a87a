#pragma once

#include <array>
#include <cstddef>

#include "install/InstallationView.h"

namespace mip {

/// The three bars of the progress screen and the rules by which they move; and the whole run's progress, to which each
/// manual adds the same part.
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

    /// The manual `number` of `count` begins; the first is 1.
    void BeginManual(int number, int count);
    /// Manuals are written from now on, or no longer.
    void SetWriting(bool writing);
    void SetFailed();

    const BarState& State(Bar bar) const { return bars_[static_cast<std::size_t>(bar)]; }

  private:
    BarState& At(Bar bar) { return bars_[static_cast<std::size_t>(bar)]; }
    void Show(Bar bar);
    void Advance(float partOfManual);

    InstallationView& view_;
    std::array<BarState, 3> bars_;
    RunProgress progress_;
    int manualsDone_ = 0;
    int manuals_ = 1;
};

}  // namespace mip
