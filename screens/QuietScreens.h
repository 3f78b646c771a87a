#pragma once

#include "screens/Screens.h"

namespace mip {

struct Program;
class ScreenFlow;

/// The screens of a run that asks no questions. /SILENT shows how the work goes on, by the screens that are shown;
/// /VERYSILENT shows nothing. Where a user would answer, the switches have answered already.
class QuietScreens final : public Screens {
  public:
    QuietScreens(Program& program, ScreenFlow& flow, Screens& shown) : program_(program), flow_(flow), shown_(shown) {}

    void ShowMenu() override;
    void ShowAgreement() override;
    void ShowInstallation() override;
    void ShowResult() override;
    void ShowClosing() override;
    void ShowMaintenance() override;
    void ShowStartPage() override {}
    std::optional<std::wstring> AskForFolder(const DiscCatalogueRecord& manual, const std::wstring& proposal) override;

  private:
    Program& program_;
    ScreenFlow& flow_;
    Screens& shown_;
};

}  // namespace mip
