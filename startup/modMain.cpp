#include "startup/modMain.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "app/Messages.h"
#include "app/Program.h"
#include "app/modFile.h"
#include "app/modLanguage.h"
#include "app/modRegistry.h"
#include "app/modShell.h"
#include "app/modSysParameter.h"
#include "catalogue/clsMDB.h"
#include "catalogue/modMdbUpgrade.h"
#include "manualinfo/modManualInfo.h"
#include "platform/Clock.h"
#include "platform/Computer.h"
#include "platform/Files.h"
#include "platform/MessageBoxes.h"
#include "platform/PlatformError.h"
#include "platform/Processes.h"
#include "screens/AgreementScreen.h"
#include "screens/MenuScreen.h"
#include "screens/modBrowser.h"
#include "security/modGetUsersName.h"
#include "startup/CommandLine.h"
#include "text/TextTools.h"

namespace mip {
namespace {

[[noreturn]] void EndWith(Program& program, ExitCode code) {
    program.Outcome.ExitCode = code;
    EndProgram(program, TemporaryFolder::Keep);
}

/// Says why the program cannot go on, in a fixed text, and ends it. A quiet run may have installed manuals by now.
[[noreturn]] void FailStart(Program& program, const std::wstring& text) {
    const bool hasRun = program.Outcome.RunFinished;
    program.Log.Write(hasRun ? L"end" : L"start-up", L"", text);
    try {
        program.Platform.MessageBoxes.Show(text, boxes::Ok | boxes::Exclamation, ProgramTitle);
    } catch (const std::exception& error) {
        // Without a box the exit code still tells.
        program.Log.Trapped("showing why the program cannot go on", error);
    }
    EndWith(program, hasRun ? ExitCode::FailedPartWay : ExitCode::CouldNotStart);
}

void StartLog(Program& program) {
    const std::wstring& file = program.Switches.LogFile;
    if (file.empty()) {
        return;
    }
    try {
        program.Log.StartFile(file);
    } catch (const PlatformError& error) {
        program.Log.Trapped("starting the log file", error);
        FailStart(program, L"Log file cannot be written: " + file);
    }
    program.Log.Write(L"start-up", L"", L"started");
}

std::wstring SysDirOf(const Program& program) {
    return JoinPath(program.Platform.Computer.ProgramFolder(), L"SysDir");
}

std::wstring ChooseLanguage(const Program& program) {
    return program.Switches.Language.empty() ? GetLanguageCode(program.Platform) : program.Switches.Language;
}

/// Switches are read before the settings; what is said about them needs the texts all the same.
void FindTexts(Program& program) {
    program.Paths.SysDirPath = SysDirOf(program);
    program.Identity.LanguageCode = ChooseLanguage(program);
}

/// A disc without message files still names the bad one.
std::wstring BadSwitchText(Program& program) {
    FindTexts(program);
    const std::wstring text = GetMessageText(program, messages::BadSwitch);
    return text.empty() ? L"Unknown or incomplete switch: " : text;
}

/// Says what the switches mean, and ends the program.
[[noreturn]] void EndWithHelp(Program& program) {
    FindTexts(program);
    std::wstring text = GetMessageText(program, messages::HelpPurpose) + L"\r\n";
    for (std::int16_t number = messages::HelpSilent; number <= messages::HelpHelp; ++number) {
        text += L"\r\n" + GetMessageText(program, number);
    }
    program.Platform.MessageBoxes.Show(text, boxes::Ok | boxes::Information, ProgramTitle);
    EndWith(program, ExitCode::Done);
}

void TakeSwitches(Program& program, const std::vector<std::wstring>& arguments) {
    try {
        program.Switches = ReadSwitches(arguments);
        StartLog(program);
    } catch (const BadSwitch& bad) {
        program.Switches = bad.Others();
        StartLog(program);
        FailStart(program, BadSwitchText(program) + bad.Text());
    }
}

void LoadSettings(Program& program) {
    Paths& paths = program.Paths;
    paths.ProgramFolder = program.Platform.Computer.ProgramFolder();
    paths.SysDirPath = SysDirOf(program);
    paths.SysParameterPath = JoinPath(paths.SysDirPath, L"SysParameter.ini");
    if (!program.Platform.Files.Exists(paths.SysParameterPath)) {
        FailStart(program, L"System Parameter File None");
    }
    if (!ReadSystemParameters(program)) {
        FailStart(program, L"No System Data");
    }
}

void FindPlacesAndNames(Program& program) {
    Paths& paths = program.Paths;
    Identity& identity = program.Identity;
    Platform& platform = program.Platform;
    identity.LanguageCode = ChooseLanguage(program);
    paths.RmDirBatPath = JoinPath(paths.SysDirPath, L"RmDir.bat");
    ReadInstallPaths(platform, identity.LanguageCode, paths);
    identity.UserName = GetLoginUserName(platform);
    paths.DiscRootPath = GetParentFolder(GetParentFolder(GetParentFolder(paths.ProgramFolder))) + L"\\";
    paths.SecondDiscBase = platform.Volumes.DriveName(paths.ProgramFolder) + L"\\";
    identity.FullAccessTrustee = GetUsersGroupName(platform);
    identity.FolderTrustee = GetUsersGroupName(platform);
}

/// From here on the screens do without the disc.
void KeepTexts(Program& program) {
    KeepMessageTexts(program);
    program.KeptTexts.Agreement = LoadAgreementText(program);
}

/// The computer lacks the diagnostic program: the disc's start page is all that it gets.
[[noreturn]] void EndWithStartPage(Program& program, ScreenFlow& flow) {
    program.Outcome.ExitCode = ExitCode::NoDiagnosticProgram;
    program.Log.Write(L"start-up", L"", L"the diagnostic program is not installed");
    flow.ShowStartPage();
    EndProgram(program, TemporaryFolder::Keep);
}

/// The number of the message that says why the catalogue database cannot be used, if so.
std::optional<std::int16_t> OpenCatalogue(Program& program) {
    Paths& paths = program.Paths;
    program.CatalogDb = std::make_unique<clsMDB>(program.Platform);
    paths.MdbPath = JoinPath(paths.ManualInstallDir, program.Settings.Kvx3MdbName);
    paths.LdbPath = JoinPath(paths.ManualInstallDir, ReplaceAll(program.Settings.Kvx3MdbName, L"mdb", L"ldb"));

    const bool managerNotRunning = IsManagerNotRunning(program);
    if (managerNotRunning) {
        RecoverInterruptedUpgrade(program);
    }
    if (!program.Platform.Files.Exists(paths.MdbPath)) {
        return messages::NoDatabase;
    }
    if (!managerNotRunning) {
        return messages::ManagerRunning;
    }
    if (!program.CatalogDb->Pcls_MdbOpen(paths.MdbPath)) {
        return messages::DatabaseNotOpened;
    }
    if (!IsFileWritable(program.Platform, paths.MdbPath)) {
        return messages::DatabaseReadOnly;
    }
    return std::nullopt;
}

void ShowFailure(Program& program, ScreenFlow& flow, std::int16_t message) {
    Outcome& outcome = program.Outcome;
    FailRun(program, message);
    outcome.ExitCode = ExitCode::CouldNotStart;
    program.Log.Write(L"start-up", L"", outcome.ResultMessage + L' ' + outcome.ResultSubMessage);
    flow.ShowResult();
}

void StartUp(Program& program, ScreenFlow& flow, const std::vector<std::wstring>& arguments) {
    if (program.Platform.Computer.IsPreviousInstanceRunning()) {
        program.Platform.Computer.ShowPreviousInstance();
        EndWith(program, ExitCode::CouldNotStart);
    }
    TakeSwitches(program, arguments);
    if (program.Switches.Help) {
        EndWithHelp(program);
    }
    flow.ChooseScreens();
    LoadSettings(program);
    FindPlacesAndNames(program);
    if (!IsManualLinkInstalled(program)) {
        EndWithStartPage(program, flow);
    }
    KeepTexts(program);
    if (const auto failure = OpenCatalogue(program)) {
        ShowFailure(program, flow, *failure);
    } else {
        flow.Begin();
    }
}

std::wstring Describe(const std::exception& error) {
    std::wstring text = L"Unexpected error: " + FromUtf8(error.what());
    if (const auto* platformError = dynamic_cast<const PlatformError*>(&error)) {
        text += L"\r\n" + platformError->Object();
    }
    return text;
}

/// How the run came out, for the last line of the log.
std::wstring SummaryOf(const Program& program) {
    const Outcome& outcome = program.Outcome;
    std::wstring text = L"exit code " + std::to_wstring(static_cast<std::uint32_t>(outcome.ExitCode));
    if (outcome.RunFinished) {
        const auto chosen =
            std::ranges::count(program.DiscCatalogue.Records, Selection::Candidate, &DiscCatalogueRecord::InstallFlag);
        text += L", " + std::to_wstring(outcome.ManualsRecorded) + L" of " + std::to_wstring(chosen) +
                L" manuals installed";
    }
    return outcome.ResultMessage.empty() ? text : text + L": " + outcome.ResultMessage;
}

}  // namespace

void Main(Program& program, ScreenFlow& flow, const std::vector<std::wstring>& arguments) {
    try {
        StartUp(program, flow, arguments);
    } catch (const std::exception& error) {
        program.Log.Trapped("starting up, or running quietly", error);
        FailStart(program, Describe(error));
    }
}

bool IsManualLinkInstalled(const Program& program) {
    const std::wstring& folder = program.Paths.ManualInstallDir;
    return !folder.empty() && program.Platform.Folders.Exists(folder) &&
           program.Platform.Files.Exists(JoinPath(folder, program.Settings.Kvx3ExeName));
}

void OpenDiscIndex(Program& program) {
    if (!program.Platform.Files.Exists(program.Paths.DiscRootPath + L"index.html")) {
        return;
    }
    const std::optional<ManualInfoCheck> check = CheckLocalManualInfo(program);
    if (!check) {
        EndWith(program, ExitCode::CouldNotStart);
    }
    if (!check->MayOpen && AskAboutManualInfo(program, *check) == boxes::AnswerNo) {
        EndProgram(program, TemporaryFolder::Keep);
    }
    ReportStartPage(program, ShowDiscIndex(program.Platform, program.Paths, [] { return false; }));
}

bool IsManagerNotRunning(Program& program) {
    program.ProcessNames.assign(1, L"");
    const auto running = program.Platform.Processes.Snapshot();
    if (!running) {
        return !program.Platform.Files.Exists(program.Paths.LdbPath);
    }
    program.ProcessNames.insert(program.ProcessNames.end(), running->begin(), running->end());
    return IsProgramNotRunning(program.ProcessNames, program.Settings.McpExeName);
}

void EndProgram(Program& program, TemporaryFolder temporary) {
    program.CatalogDb.reset();
    if (temporary == TemporaryFolder::Remove) {
        RemoveFolder(program.Platform, program.Paths, program.Paths.UnZipTempPath);
    }
    const auto code = static_cast<std::uint32_t>(program.Outcome.ExitCode);
    program.Log.Write(L"end", L"", SummaryOf(program));
    program.Platform.Computer.EndProcess(code);
    std::abort();
}

}  // namespace mip
