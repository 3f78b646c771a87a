#include "screens/ScreenFlow.h"

#include <cstdlib>

#include "app/Messages.h"
#include "app/Program.h"
#include "platform/MessageBoxes.h"
#include "screens/ResultScreen.h"

namespace mip {

ScreenFlow::ScreenFlow(Program& program, Screens& shown, EndOfProgram end)
    : program_(program), quiet_(program, *this, shown), screens_(&shown), end_(end) {}

void ScreenFlow::ChooseScreens() {
    if (program_.Switches.IsQuiet()) {
        screens_ = &quiet_;
    }
}

void ScreenFlow::Begin() {
    program_.Switches.IsMaintenance() ? screens_->ShowMaintenance() : screens_->ShowMenu();
}

void ScreenFlow::ShowStartPage() {
    screens_->ShowStartPage();
}

void ScreenFlow::StartInstallation() {
    screens_->ShowAgreement();
}

void ScreenFlow::CloseMenu() {
    if (!program_.Outcome.RunFinished) {
        Leave();
    }
    screens_->ShowClosing();
}

void ScreenFlow::AnswerAgreement(bool agreed) {
    if (!agreed) {
        Leave();
    }
    screens_->ShowInstallation();
}

std::optional<std::wstring> ScreenFlow::AskForFolder(const DiscCatalogueRecord& manual, const std::wstring& proposal) {
    return screens_->AskForFolder(manual, proposal);
}

void ScreenFlow::ShowResult() {
    screens_->ShowResult();
}

void ScreenFlow::FailResult() {
    program_.Platform.MessageBoxes.Show(L"MDB READ ERROR", boxes::Exclamation, ProgramTitle);
    program_.Outcome.ExitCode = ExitCode::FailedPartWay;
    End(TemporaryFolder::Remove);
}

void ScreenFlow::CloseResult() {
    if (NothingWasInstalled(program_.Outcome)) {
        End();
    }
    FinishRun(program_);
    screens_->ShowMenu();
}

void ScreenFlow::End(TemporaryFolder temporary) {
    end_(program_, temporary);
    std::abort();
}

/// Leaving before any run has ended: nothing was installed. Otherwise the last run's code stands.
void ScreenFlow::Leave() {
    if (!program_.Outcome.RunFinished) {
        program_.Outcome.ExitCode = ExitCode::NotAccepted;
    }
    End();
}

}  // namespace mip
