#include "screens/ScreenFlow.h"

#include "app/ExitCode.h"
#include "app/modMain.h"
#include "install/modManualInstall.h"
#include "platform/MessageBoxes.h"
#include "screens/DirectoryScreen.h"
#include "screens/ResultScreen.h"
#include "screens/TransactionScreen.h"

namespace mip {

namespace {

constexpr std::int16_t KeepTemporary = 1;
constexpr std::int16_t RemoveTemporary = 0;

/// Leaving before any run has ended: nothing was installed. Otherwise the last run's code stands.
[[noreturn]] void Leave(Program& program) {
    if (!program.Outcome.RunFinished) {
        program.Outcome.ExitCode = static_cast<std::uint32_t>(ExitCode::NotAccepted);
    }
    EndProgram(program, KeepTemporary);
}

}  // namespace

void ScreenFlow::StartInstallation() {
    screens_.ShowStartUp();
}

void ScreenFlow::CloseMenu() {
    if (!program_.Outcome.RunFinished) {
        Leave(program_);
    }
    screens_.ShowTerms();
}

void ScreenFlow::AnswerAgreement(bool agreed) {
    if (!agreed) {
        Leave(program_);
    }
    screens_.ShowInstallation();
}

void ScreenFlow::EndInstallation() {
    screens_.ShowResult();
}

void ScreenFlow::FailResult() {
    program_.Platform.MessageBoxes.Show(L"MDB READ ERROR", boxes::Exclamation, L"Manual Install Program");
    program_.Outcome.ExitCode = static_cast<std::uint32_t>(ExitCode::FailedPartWay);
    EndProgram(program_, RemoveTemporary);
}

void ScreenFlow::CloseResult() {
    if (NothingWasInstalled(program_.Outcome)) {
        EndProgram(program_, KeepTemporary);
    }
    FinishRun(program_);
    screens_.ShowMenu();
}

void ScreenFlow::CloseTerms() {
    EndProgram(program_, KeepTemporary);
}

void ScreenFlow::EndTransaction() {
    EndProgram(program_, KeepTemporary);
}

void SilentInstallation::AskForFolder() {
    ChooseFolderUnasked(program_);
}

void InstallSilently(Program& program) {
    SilentInstallation view(program);
    InstallationDriver driver(program, view);
    driver.FormLoad();
    driver.RunInstallation();
}

void EndQuietRun(Program& program) {
    if (!NothingWasInstalled(program.Outcome)) {
        FinishRun(program);
    }
    EndProgram(program, KeepTemporary);
}

void RunTransactionSilently(Program& program) {
    RunTransaction(program);
    EndProgram(program, KeepTemporary);
}

}  // namespace mip
