#pragma once

#include <string>

#include "install/InstallationView.h"
#include "install/ManualWorker.h"
#include "install/ProgressBars.h"

namespace mip {

struct Program;

/// The installation run behind the progress screen: four steps, the first failure ends it. The run's outcome is in
/// Program::Outcome, its texts included.
class InstallationDriver {
  public:
    InstallationDriver(Program& program, InstallationView& view, FolderQuestion& question);

    /// Prepares captions, frames and bars. Called when the screen loads.
    void FormLoad();
    /// Runs the whole installation. Never throws; stores its result in Outcome.ResultKind and returns it.
    bool RunInstallation();

    /// Every 1000 ms: the extraction bar creeps by one.
    void Timer1();
    /// Every 200 ms: the PDF bar creeps by five.
    void Timer2();

  private:
    bool RunSteps();
    bool RunStep(const wchar_t* name, std::int16_t message, bool (InstallationDriver::*step)());
    bool StepManagerProgram();
    bool StepCompanionPrograms();
    bool StepCatalogue();
    bool StepManuals();
    bool InstallManualsAwake();

    std::wstring FindManagerSetup() const;
    bool IsManagerUpToDate(const std::wstring& setupPath) const;
    void StampManagerVersion();
    bool SetUpCompanion(const std::wstring& name, bool (*install)(Program&, const std::wstring&));

    void ShowWaiting(Step step);
    void ShowRunning(Step step);
    void ShowDone(Step step);
    void CloseOutcome(bool succeeded);
    void Fail(std::int16_t message);

    Program& program_;
    InstallationView& view_;
    ProgressBars bars_;
    ManualWorker worker_;
};

}  // namespace mip
