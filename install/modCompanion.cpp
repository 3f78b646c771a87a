#include "install/modCompanion.h"

#include <exception>
#include <stdexcept>
#include <string_view>

#include "app/Attempt.h"
#include "app/Messages.h"
#include "app/Program.h"
#include "app/TextFile.h"
#include "app/modFile.h"
#include "app/modRegistry.h"
#include "app/modShell.h"
#include "app/modSysParameter.h"
#include "install/modShortcut.h"
#include "platform/FileVersions.h"
#include "platform/Files.h"
#include "platform/MessageBoxes.h"
#include "text/Checked.h"
#include "text/TextTools.h"

namespace mip {

namespace {

void MakeManagerShortcut(Program& program) {
    if (program.Settings.ShortcutIconFlag == 0) {
        return;
    }
    const std::wstring name = GetMessageText(program, messages::ShortcutName);
    CreateProgramShortcut(program.Platform, GetShortcutPath(program.Platform, specialFolders::Programs, name),
                          JoinPath(program.Paths.InstallDir, program.Settings.McpExeName));
}

/// Where a companion's setup leaves its log, by the paths as they are at the moment.
using LogPlace = std::wstring (*)(const Paths& paths);

std::wstring LinkLog(const Paths& paths) {
    return JoinPath(paths.LinkFolderPath, L"setup.log");
}

std::wstring ViewerLog(const Paths& paths) {
    return JoinPath(GetParentFolder(paths.ViewerExePath), L"setup.log");
}

/// When a file was written; nothing when there is none.
std::optional<FileTime> TimeOf(Platform& platform, const std::wstring& file) {
    return platform.Files.Exists(file) ? std::optional(platform.Files.Status(file).Modified) : std::nullopt;
}

/// An earlier run's log is in the way, but no more: the time tells it from this run's.
void TryToDelete(Platform& platform, const std::wstring& file) {
    (void)Attempt(platform.FaultLog, "deleting a setup's log", [&] { DeleteFileAtOnce(platform, file); });
}

/// Reads the paths again, as the setup may have moved them.
void TakeNewPaths(Program& program) {
    if (!RereadInstallPaths(program.Platform, program.Identity.LanguageCode, program.Paths)) {
        throw std::runtime_error("the registry has lost the programs' paths");
    }
}

/// The result code in the log of this very run. The log may be in a folder that the setup has chosen itself.
bool RunLoggedSetup(Program& program, const std::wstring& commandLine, LogPlace place) {
    Platform& platform = program.Platform;
    const std::wstring oldLog = place(program.Paths);
    TryToDelete(platform, oldLog);
    const std::optional<FileTime> oldTime = TimeOf(platform, oldLog);
    if (!RunAndWait(platform, commandLine)) {
        return false;
    }
    TakeNewPaths(program);
    const std::wstring log = place(program.Paths);
    const std::optional<FileTime> time = TimeOf(platform, log);
    if (!time || (log == oldLog && time == oldTime)) {
        throw std::runtime_error("the setup has left no log: " + ToUtf8(log));
    }
    const std::int32_t result = TextToInt32(ReadLastLine(platform, log));
    TryToDelete(platform, log);
    return result == 0;
}

constexpr std::string_view SettingUp = "setting a program up";

}  // namespace

bool InstallManagerProgram(Program& program, const std::wstring& setupPath) {
    const bool installed = Attempt(program.Log, SettingUp, [&] {
        (void)RunAndWait(program.Platform, setupPath + L" /VERYSILENT /SP-");
        TakeNewPaths(program);
        const bool hasSetup = program.Platform.Files.Exists(setupPath);
        if (hasSetup) {
            MakeManagerShortcut(program);
        }
        return hasSetup;
    });
    if (!installed) {
        FailRun(program, messages::ManagerFailed);
    }
    return installed;
}

bool InstallLinkProgram(Program& program, const std::wstring& setupPath) {
    return Attempt(program.Log, SettingUp, [&] { return RunLoggedSetup(program, setupPath + L" 1", LinkLog); });
}

bool InstallViewerProgram(Program& program, const std::wstring& setupPath) {
    return Attempt(program.Log, SettingUp,
                   [&] { return RunLoggedSetup(program, setupPath + L" /VERYSILENT /SP-", ViewerLog); });
}

bool GoesOnWithoutCompanion(const Program& program) {
    const int answer = program.Platform.MessageBoxes.Show(
        GetMessageText(program, messages::CompanionFailed) + GetMessageText(program, messages::GoOnWithoutCompanion),
        boxes::Exclamation | boxes::YesNo | boxes::SecondButtonDefault, GetMessageText(program, messages::Caption));
    return answer != boxes::AnswerNo;
}

std::wstring ReadLastLine(Platform& platform, const std::wstring& file) {
    const auto lines = ReadTextLines(platform, file);
    return lines.empty() ? std::wstring() : lines.back();
}

std::optional<FileVersionNumbers> GetFileVersionNumbers(Platform& platform, const std::wstring& file) {
    try {
        const FixedFileVersion version = platform.FileVersions.Read(file);
        return FileVersionNumbers{version.Most >> 16, version.Most & 0xFFFF, version.Least >> 16,
                                  version.Least & 0xFFFF};
    } catch (const std::exception& error) {
        platform.FaultLog.Trapped("reading a program's version", error);
        return std::nullopt;
    }
}

}  // namespace mip
