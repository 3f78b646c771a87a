#pragma once

#include "forms/Form.h"
#include "forms/GridWindow.h"
#include "screens/ResultScreen.h"

namespace mip {

/// The outcome of a run and the list of the disc's manuals.
class frmResult final : public Form, private SpreadForm {
  public:
    explicit frmResult(FormHost& host) : Form(host) {}

  protected:
    void OnLoad() override;
    void OnShown() override;
    void OnCommand(int control, int notification) override;
    void OnClose() override { End(); }
    /// Ctrl+C in any control arrives as WM_COPY with the control's number.
    std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    int Arrange(int left, int top, int width) override;
    void Paint(HDC dc, const Palette& colours) override;

  private:
    std::vector<SpreadGrid*> SpreadGrids() override { return {&grid_.Model()}; }

    void AddOutcome();
    void AddGrid();
    void AddLegend();
    void AddShortcutChoice();
    void Copy(int control);
    void End();
    /// In high contrast no row is coloured.
    bool ShowsLegend() const { return hasLegend_ && !Colours().HighContrast; }
    bool HasRows() { return grid_.Model().Rows() > 0; }

    GridWindow grid_{0, 6};
    OutcomeTexts outcome_;
    RECT strip_{};
    RECT legend_{};
    bool hasLegend_ = false;
};

}  // namespace mip
