#pragma once

#include <array>

#include "forms/ControlIds.h"
#include "forms/Form.h"
#include "forms/TaskbarButton.h"
#include "install/modManualInstall.h"

namespace mip {

/// The installation progress screen. It runs the installation by itself when it is shown, then hands over to the
/// result screen.
class frmMain final : public Form, private InstallationView {
  public:
    explicit frmMain(FormHost& host) : Form(host), driver_(host.Program(), *this, host.Flow()) {}

  protected:
    void OnLoad() override;
    void OnShown() override;
    int Arrange(int left, int top, int width) override;
    void Paint(HDC dc, const Palette& colours) override;
    std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    /// The coloured frame beside a step's caption.
    struct StepFrame {
        StepState State = StepState::Waiting;
        RECT Area{};
    };
    StepFrame& Frame(Step step) { return frames_[static_cast<std::size_t>(step) - 1]; }

    void SetCaption(const std::wstring& caption) override;
    void SetStep(Step step, const std::wstring& caption, StepState state) override;
    void SetBar(Bar bar, const BarState& state) override;
    void SetManual(const std::wstring& name, const std::wstring& position) override;
    void SetProgress(const RunProgress& progress) override;
    void SetBusyPointer(bool busy) override { ShowBusy(busy); }
    void Repaint() override;

    void ShowOnTaskbar();
    void DrawStep(HDC dc, const Palette& colours, Step step);

    std::array<StepFrame, 3> frames_;
    RunProgress progress_;
    TaskbarButton taskbar_;
    InstallationDriver driver_;
};

}  // namespace mip
