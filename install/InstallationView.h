#pragma once

#include <string>

namespace mip {

enum class Step { Programs = 1, Catalogue, Manuals };
inline constexpr Step AllSteps[] = {Step::Programs, Step::Catalogue, Step::Manuals};

enum class StepState { Waiting, Running, Done };

/// The progress bars of the installation screen.
enum class Bar { SevenZip, Copy, Pdf };

/// What a bar shows. A bar that is not enabled is left alone by the timers.
struct BarState {
    float Min = 0;
    float Max = 1;
    float Value = 0;
    bool Visible = false;
    bool Enabled = false;

    bool operator==(const BarState&) const = default;
};

/// How far the whole run is.
struct RunProgress {
    float Part = 0;        ///< of all the manuals that it installs, 0 to 1
    bool Writing = false;  ///< manuals are being written: the computer should not be shut down now
    bool Failed = false;

    bool operator==(const RunProgress&) const = default;
};

/// What the installation asks of the progress screen, owned by the driver. A quiet run has one that shows nothing.
class InstallationView {
  public:
    virtual ~InstallationView() = default;

    virtual void SetCaption(const std::wstring& caption) = 0;
    virtual void SetStep(Step step, const std::wstring& caption, StepState state) = 0;
    virtual void SetBar(Bar bar, const BarState& state) = 0;
    /// Names the manual that is being worked on and says which of how many it is; both "" when none is.
    virtual void SetManual(const std::wstring& name, const std::wstring& position) = 0;
    virtual void SetProgress(const RunProgress& progress) = 0;
    virtual void SetBusyPointer(bool busy) = 0;
    /// Draws what has changed, now.
    virtual void Repaint() = 0;
};

}  // namespace mip
