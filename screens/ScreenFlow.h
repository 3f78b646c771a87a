#pragma once

#include "app/Program.h"
#include "app/Screens.h"
#include "install/InstallationView.h"

namespace mip {

/// The order of screens. A form closes its window and then reports here what the user did.
class ScreenFlow {
  public:
    ScreenFlow(Program& program, Screens& screens) : program_(program), screens_(screens) {}

    void StartInstallation();
    /// The menu was closed: through the closing screen when a run has ended, else at once.
    void CloseMenu();
    /// The agreement was answered; anything but consent ends the program.
    void AnswerAgreement(bool agreed);
    /// The installation run is over.
    void EndInstallation();
    /// The result screen could not read the catalogue: a box, and the program ends.
    [[noreturn]] void FailResult();
    /// The result screen's button. Ends the program when nothing was installed.
    void CloseResult();
    [[noreturn]] void CloseTerms();
    [[noreturn]] void EndTransaction();

  private:
    Program& program_;
    Screens& screens_;
};

/// The progress screen of a run that shows nothing.
class SilentInstallation final : public InstallationView {
  public:
    explicit SilentInstallation(Program& program) : program_(program) {}

    void SetCaption(const std::wstring&) override {}
    void SetStep(Step, const std::wstring&, bool, std::uint32_t) override {}
    void SetBar(Bar, const BarState&) override {}
    void SetManual(const std::wstring&) override {}
    void SetBusyPointer(bool) override {}
    void Repaint() override {}
    void AskForFolder() override;

  private:
    Program& program_;
};

/// The installation of a /VERYSILENT run, from its first step to its outcome.
void InstallSilently(Program& program);
/// What stands in the result screen's place in a quiet run: finishes the run and ends the program.
[[noreturn]] void EndQuietRun(Program& program);
/// The same for the transaction screen of a /VERYSILENT run.
[[noreturn]] void RunTransactionSilently(Program& program);

}  // namespace mip
