#include "install/ProgressBars.h"

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

void ProgressBars::Creep(Bar bar, float amount, float limit) {
    if (State(bar).Enabled && State(bar).Value < limit) {
        SetValue(bar, State(bar).Value + amount);
    }
}

}  // namespace mip
