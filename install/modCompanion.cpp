#include "install/modCompanion.h"

#include <exception>

#include "app/Messages.h"
#include "app/TextFile.h"
#include "app/modFile.h"
#include "app/modSysParameter.h"
#include "install/modShell.h"
#include "install/modShortcut.h"
#include "platform/FileVersions.h"
#include "platform/Files.h"
#include "text/Checked.h"

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

/// Runs a setup that reports through a log: only the log of this run counts, and it does not stay.
bool RunLoggedSetup(Program& program, const std::wstring& commandLine, const std::wstring& logFile) {
    Platform& platform = program.Platform;
    try {
        DeleteFileForced(platform, logFile);
        if (!RunAndWait(platform, commandLine) || !platform.Files.Exists(logFile)) {
            return false;
        }
        const std::int32_t result = TextToInt32(ReadLastLine(platform, logFile));
        DeleteFileForced(platform, logFile);
        return result == 0;
    } catch (const std::exception&) {
        return false;
    }
}

}  // namespace

bool InstallManagerProgram(Program& program, const std::wstring& setupPath) {
    try {
        (void)RunAndWait(program.Platform, setupPath + L" /VERYSILENT /SP-");
        if (program.Platform.Files.Exists(setupPath)) {
            MakeManagerShortcut(program);
            return true;
        }
    } catch (const std::exception&) {
        return false;
    }
    FailRun(program, messages::ManagerFailed);
    return false;
}

bool InstallLinkProgram(Program& program, const std::wstring& setupPath) {
    return RunLoggedSetup(program, setupPath + L" 1", JoinPath(program.Paths.LinkFolderPath, L"setup.log"));
}

bool InstallViewerProgram(Program& program, const std::wstring& setupPath) {
    const std::wstring& viewer = program.Paths.ViewerExePath;
    const std::wstring folder = viewer.substr(0, viewer.rfind(L'\\'));
    return RunLoggedSetup(program, setupPath + L" /VERYSILENT /SP-", JoinPath(folder, L"setup.log"));
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
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

}  // namespace mip
