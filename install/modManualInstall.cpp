#include "install/modManualInstall.h"

#include <exception>

#include "app/ExitCode.h"
#include "app/Messages.h"
#include "app/Program.h"
#include "app/modFile.h"
#include "app/modShell.h"
#include "app/modSysParameter.h"
#include "catalogue/modCarInfo.h"
#include "catalogue/modMdbUpgrade.h"
#include "install/VersionStamp.h"
#include "install/modCompanion.h"
#include "manualinfo/modManualInfo.h"
#include "platform/Clock.h"
#include "platform/Computer.h"
#include "platform/Files.h"
#include "platform/ScopeGuard.h"

namespace mip {

namespace {

/// A step's captions: before, while running, when done.
struct StepCaptions {
    std::int16_t Before;
    std::int16_t Running;
    std::int16_t Done;
};

StepCaptions CaptionsOf(Step step) {
    switch (step) {
        case Step::Programs:
            return {messages::ProgramsWaiting, messages::ProgramsRunning, messages::ProgramsDone};
        case Step::Catalogue:
            return {messages::CatalogueWaiting, messages::CatalogueRunning, messages::CatalogueDone};
        case Step::Manuals:
            return {messages::ManualsWaiting, messages::ManualsRunning, messages::ManualsDone};
    }
    return {};
}

}  // namespace

InstallationDriver::InstallationDriver(Program& program, InstallationView& view, FolderQuestion& question)
    : program_(program), view_(view), bars_(view), worker_(program, view, bars_, question) {}

void InstallationDriver::FormLoad() {
    program_.WindowTitle = GetMessageText(program_, messages::Caption);
    view_.SetCaption(program_.WindowTitle);
    for (const Step step : AllSteps) {
        ShowWaiting(step);
    }
    program_.Outcome.ResultMessage.clear();
    program_.Outcome.ResultSubMessage.clear();
    bars_.HideAll();
}

bool InstallationDriver::RunInstallation() {
    program_.Outcome.InstallCancelled = false;
    program_.Outcome.ManagerInstalled = false;
    program_.Outcome.ManualsRecorded = 0;

    view_.SetBusyPointer(true);
    const bool succeeded = RunSteps();
    if (!succeeded) {
        bars_.SetFailed();
    }
    PauseSeconds(program_.Platform.Clock, 1);
    view_.SetBusyPointer(false);

    CloseOutcome(succeeded);
    return succeeded;
}

bool InstallationDriver::RunSteps() {
    return RunStep(L"manager", messages::ManagerFailed, &InstallationDriver::StepManagerProgram) &&
           RunStep(L"companions", messages::CompanionFailed, &InstallationDriver::StepCompanionPrograms) &&
           RunStep(L"disc", messages::DiscUnreadable, &InstallationDriver::StepCatalogue) &&
           RunStep(L"manuals", messages::ManualFailed, &InstallationDriver::StepManuals);
}

/// Runs one step. What it throws is its failure, with the failure's own message or the step's.
bool InstallationDriver::RunStep(const wchar_t* name, std::int16_t message, bool (InstallationDriver::*step)()) {
    program_.Log.SetContext(name);
    try {
        return (this->*step)();
    } catch (const std::exception& error) {
        FailRun(program_, message, "the step of the installation", error);
        PauseSeconds(program_.Platform.Clock, 2);
        return false;
    }
}

bool InstallationDriver::StepManagerProgram() {
    ShowRunning(Step::Programs);
    const std::wstring setupPath = FindManagerSetup();
    if (IsManagerUpToDate(setupPath)) {
        program_.Log.Write(L"manager", L"", L"up to date");
        // A run may have ended between the setup and the stamp.
        StampManagerVersion();
        PauseSeconds(program_.Platform.Clock, 1);
    } else {
        const bool installed = InstallManagerProgram(program_, setupPath);
        program_.Log.Write(L"manager", L"", installed ? L"set up" : L"failed");
        if (!installed) {
            PauseSeconds(program_.Platform.Clock, 2);
            return false;
        }
        program_.Outcome.ManagerInstalled = true;
        StampManagerVersion();
    }

    const bool upgraded = CheckDatabaseVersion(program_);
    program_.Log.Write(L"catalogue database", L"", upgraded ? L"current" : L"upgrade failed");
    if (!upgraded) {
        Fail(messages::UpgradeFailed);
        PauseSeconds(program_.Platform.Clock, 2);
        return false;
    }
    PauseSeconds(program_.Platform.Clock, 1);
    return true;
}

std::wstring InstallationDriver::FindManagerSetup() const {
    const std::wstring tail = L"programs\\man_manager\\setup.exe";
    const std::wstring onDisc = program_.Paths.DiscRootPath + tail;
    return program_.Platform.Files.Exists(onDisc) ? onDisc : program_.Paths.SecondDiscBase + tail;
}

bool InstallationDriver::IsManagerUpToDate(const std::wstring& setupPath) const {
    const std::wstring installed = JoinPath(program_.Paths.InstallDir, program_.Settings.McpExeName);
    const std::wstring onDisc = JoinPath(GetParentFolder(setupPath), program_.Settings.McpExeName);
    return program_.Platform.Files.Exists(installed) && !IsFileOutdated(program_.Platform, installed, onDisc);
}

void InstallationDriver::StampManagerVersion() {
    const auto version =
        GetFileVersionNumbers(program_.Platform, JoinPath(program_.Paths.InstallDir, program_.Settings.McpExeName));
    if (!version) {
        return;
    }
    const auto& [first, second, third, fourth] = *version;
    (void)third;  // the manager's version is known to its users without it
    const std::wstring text = std::to_wstring(first) + L"." + std::to_wstring(second) + L"." + std::to_wstring(fourth);
    if (IsVersionStamped(program_, text)) {
        return;
    }
    const bool written = WriteVersionStamp(program_, text);
    program_.Log.Write(L"version stamp", L"", written ? L"written" : L"not written");
}

bool InstallationDriver::StepCompanionPrograms() {
    if (!SetUpCompanion(L"manual_link", InstallLinkProgram) || !SetUpCompanion(L"View", InstallViewerProgram)) {
        PauseSeconds(program_.Platform.Clock, 2);
        Fail(messages::CompanionFailed);
        return false;
    }
    PauseSeconds(program_.Platform.Clock, 1);
    ShowDone(Step::Programs);
    return true;
}

/// True when the program was set up, is not on the disc, or the user goes on without it.
bool InstallationDriver::SetUpCompanion(const std::wstring& name, bool (*install)(Program&, const std::wstring&)) {
    const std::wstring setupPath = program_.Paths.DiscRootPath + L"programs\\" + name + L"\\setup.exe";
    if (!program_.Platform.Files.Exists(setupPath)) {
        return true;
    }
    const bool installed = install(program_, setupPath);
    program_.Log.Write(name, L"", installed ? L"set up" : L"failed");
    if (installed) {
        return true;
    }
    return GoesOnWithoutCompanion(program_);
}

bool InstallationDriver::StepCatalogue() {
    ShowRunning(Step::Catalogue);
    const bool scanned = ScanDiscCatalogue(program_);
    program_.Log.Write(L"disc", L"",
                       scanned ? std::to_wstring(program_.DiscCatalogue.LastIndex()) + L" manuals"
                               : L"failed " + program_.DiscCatalogue.CatalogueErrorText);
    PauseSeconds(program_.Platform.Clock, 2);
    if (!scanned) {
        program_.Outcome.ResultMessage = program_.DiscCatalogue.CatalogueErrorCaption;
        program_.Outcome.ResultSubMessage = program_.DiscCatalogue.CatalogueErrorText;
        if (program_.Outcome.ResultMessage.empty()) {
            Fail(messages::DiscUnreadable);
        }
        return false;
    }
    ShowDone(Step::Catalogue);
    return true;
}

bool InstallationDriver::StepManuals() {
    ShowRunning(Step::Manuals);
    PrepareManualInfo(program_.Platform, program_.Paths);
    if (!InstallManualsAwake()) {
        PauseSeconds(program_.Platform.Clock, 2);
        return false;
    }
    PlaceManualInfo(program_.Platform, program_.Paths);
    PauseSeconds(program_.Platform.Clock, 2);
    ShowDone(Step::Manuals);
    return true;
}

/// While manuals are written the computer does not fall asleep, and the view keeps it from being shut down.
bool InstallationDriver::InstallManualsAwake() {
    Computer& computer = program_.Platform.Computer;
    const ScopeGuard done([this, &computer] {
        computer.StayAwake(false);
        bars_.SetWriting(false);
    });
    computer.StayAwake(true);
    bars_.SetWriting(true);
    return worker_.InstallAllManuals();
}

void InstallationDriver::Timer1() {
    bars_.Creep(Bar::SevenZip, 1, static_cast<float>(program_.Settings.ZipExtractTime));
    program_.Platform.Clock.YieldToMessages();
}

void InstallationDriver::Timer2() {
    bars_.Creep(Bar::Pdf, 5, static_cast<float>(program_.Settings.ZipExtractTime));
    program_.Platform.Clock.YieldToMessages();
}

void InstallationDriver::ShowWaiting(Step step) {
    view_.SetStep(step, GetMessageText(program_, CaptionsOf(step).Before), StepState::Waiting);
}

void InstallationDriver::ShowRunning(Step step) {
    view_.SetStep(step, GetMessageText(program_, CaptionsOf(step).Running), StepState::Running);
    program_.Platform.Clock.YieldToMessages();
}

void InstallationDriver::ShowDone(Step step) {
    view_.SetStep(step, GetMessageText(program_, CaptionsOf(step).Done), StepState::Done);
    program_.Platform.Clock.YieldToMessages();
}

/// A failed run always says so: a step that was stopped by an unforeseen error leaves no text of its own.
void InstallationDriver::CloseOutcome(bool succeeded) {
    Outcome& outcome = program_.Outcome;
    outcome.ResultKind = succeeded;
    outcome.RunFinished = true;
    if (!succeeded && outcome.ResultMessage.empty()) {
        Fail(messages::Unforeseen);
    }
    if (!succeeded && outcome.ResultMessage.empty()) {
        // With the disc out of the drive there is no message file either.
        outcome.ResultMessage = L"The installation failed.";
    }
    const bool changedSomething = outcome.ManagerInstalled || outcome.ManualsRecorded > 0;
    ExitCode code = ExitCode::Done;
    if (!succeeded) {
        code = !outcome.InstallCancelled ? ExitCode::FailedPartWay
               : changedSomething        ? ExitCode::CancelledPartWay
                                         : ExitCode::NotAccepted;
    }
    outcome.ExitCode = code;
    program_.Log.Write(L"run", L"", succeeded ? L"done" : outcome.ResultMessage);
}

void InstallationDriver::Fail(std::int16_t message) {
    FailRun(program_, message);
}

}  // namespace mip
