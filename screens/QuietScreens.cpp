#include "screens/QuietScreens.h"

#include "app/Program.h"
#include "install/modManualInstall.h"
#include "screens/DirectoryScreen.h"
#include "screens/MaintenanceScreen.h"
#include "screens/ResultScreen.h"
#include "screens/ScreenFlow.h"

namespace mip {

namespace {

/// The progress screen of a run that shows nothing.
class HiddenProgress final : public InstallationView {
  public:
    void SetCaption(const std::wstring&) override {}
    void SetStep(Step, const std::wstring&, StepState) override {}
    void SetBar(Bar, const BarState&) override {}
    void SetManual(const std::wstring&, const std::wstring&) override {}
    void SetProgress(const RunProgress&) override {}
    void SetBusyPointer(bool) override {}
    void Repaint() override {}
};

}  // namespace

void QuietScreens::ShowMenu() {
    flow_.StartInstallation();
}

/// No run is quiet without /ACCEPT.
void QuietScreens::ShowAgreement() {
    flow_.AnswerAgreement(program_.Switches.Accept);
}

void QuietScreens::ShowInstallation() {
    if (!program_.Switches.VerySilent) {
        shown_.ShowInstallation();
        return;
    }
    HiddenProgress progress;
    InstallationDriver driver(program_, progress, flow_);
    driver.FormLoad();
    driver.RunInstallation();
    flow_.ShowResult();
}

/// What stands in the result screen's place finishes the run and ends the program.
void QuietScreens::ShowResult() {
    if (!NothingWasInstalled(program_.Outcome)) {
        FinishRun(program_);
    }
    flow_.End();
}

void QuietScreens::ShowClosing() {
    flow_.End();
}

void QuietScreens::ShowMaintenance() {
    if (!program_.Switches.VerySilent) {
        shown_.ShowMaintenance();
        return;
    }
    RunMaintenance(program_);
    flow_.End();
}

std::optional<std::wstring> QuietScreens::AskForFolder(const DiscCatalogueRecord& manual,
                                                       const std::wstring& proposal) {
    return ChooseFolderUnasked(program_, manual, proposal);
}

}  // namespace mip
