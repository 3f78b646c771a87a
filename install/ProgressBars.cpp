#include "install/ProgressBars.h"

#include <algorithm>

namespace mip {

void ProgressBars::HideAll() {
    for (const Bar bar : {Bar::SevenZip, Bar::Copy, Bar::Pdf}) {
        Hide(bar);
    }
}

void ProgressBars::Start(Bar bar, float minimum, float maximum, float value) {
    At(bar) = {minimum, maximum, value, true, true};
    Show(bar);
}

void ProgressBars::SetValue(Bar bar, float value) {
    At(bar).Value = value;
    Show(bar);
}

void ProgressBars::Hide(Bar bar) {
    At(bar).Visible = false;
    At(bar).Enabled = false;
    Show(bar);
}

void ProgressBars::BeginManual(int number, int count) {
    manualsDone_ = number - 1;
    manuals_ = std::max(count, 1);
    Advance(0);
}

void ProgressBars::SetWriting(bool writing) {
    progress_.Writing = writing;
    view_.SetProgress(progress_);
}

void ProgressBars::SetFailed() {
    progress_.Failed = true;
    view_.SetProgress(progress_);
}

void ProgressBars::Show(Bar bar) {
    const BarState& state = State(bar);
    view_.SetBar(bar, state);
    const float range = state.Max - state.Min;
    if (state.Visible && range > 0) {
        // The copy bar goes on from its middle where the extraction has ended.
        const float share = bar == Bar::SevenZip ? 0.5F : 1.0F;
        Advance(std::clamp((state.Value - state.Min) / range, 0.0F, 1.0F) * share);
    }
}

/// Never backwards.
void ProgressBars::Advance(float partOfManual) {
    const float part = (static_cast<float>(manualsDone_) + partOfManual) / static_cast<float>(manuals_);
    progress_.Part = std::max(progress_.Part, part);
    view_.SetProgress(progress_);
}

void ProgressBars::Creep(Bar bar, float amount, float limit) {
    if (State(bar).Enabled && State(bar).Value < limit) {
        SetValue(bar, State(bar).Value + amount);
    }
}

}  // namespace mip
