#include "app/modRegistry.h"

#include <cstddef>

#include "app/Program.h"
#include "app/modFile.h"
#include "platform/Files.h"
#include "text/TextTools.h"

namespace mip {
namespace {

constexpr std::size_t LongestValue = 255;

std::wstring ReadMachineValue(Platform& platform, const wchar_t* key, const wchar_t* valueName) {
    return ReadRegistryString(platform.Registry, Hive::LocalMachine, key, valueName);
}

void ReadDiagnosticProgram(Platform& platform, Paths& paths) {
    paths.ProgramPath = ReadMachineValue(platform, L"SOFTWARE\\VANTOR\\Korvex", L"ProgramPath");
    paths.ProgramFilesDir =
        ReadMachineValue(platform, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion", L"ProgramFilesDir");
    paths.SystemDrive = platform.Volumes.DriveName(paths.ProgramFilesDir);
    paths.LinkManualPath = JoinPath(paths.ProgramPath, L"Link\\Manual");
    paths.LinkPath = JoinPath(paths.ProgramPath, L"Link");
}

/// Without the diagnostic program the path has no drive, and no folder is made for it.
void MakeLinkFolder(Platform& platform, const Paths& paths) {
    if (!paths.ProgramPath.empty() && !platform.Folders.Exists(paths.LinkPath)) {
        MakeFolder(platform, paths.LinkPath);
    }
}

void ReadViewer(Platform& platform, const std::wstring& languageCode, Paths& paths) {
    paths.ViewerInstallDir = ReadMachineValue(platform, L"SOFTWARE\\Vantor\\Korvex\\VantorView", L"InstallDir");
    if (paths.ViewerInstallDir.empty()) {
        const bool isJapanese = languageCode == L"11";
        paths.ViewerInstallDir =
            JoinPath(isJapanese ? L"C:\\Program Files" : paths.ProgramFilesDir, L"Vantor\\Korvex\\View");
    }
    paths.ViewerExePath = JoinPath(paths.ViewerInstallDir, L"VBrowser.exe");
}

void ReadManualLibrary(Platform& platform, Paths& paths) {
    paths.ManualInstallDir = ReadMachineValue(platform, L"SOFTWARE\\Vantor\\Korvex\\ManualLink", L"InstallDir");
    paths.LinkFolderPath = JoinPath(paths.ProgramFilesDir, L"Vantor\\Korvex\\Link");
    paths.InstallDir = paths.ManualInstallDir;
    paths.UnZipTempPath = JoinPath(paths.ManualInstallDir, L"UnZipTemp");
}

}  // namespace

std::wstring ReadRegistryString(Registry& registry, Hive hive, const std::wstring& key, const std::wstring& valueName) {
    const std::wstring value = registry.ReadString(hive, key, valueName).value_or(L"");
    return CutAtNul(value).substr(0, LongestValue);
}

void ReadInstallPaths(Platform& platform, const std::wstring& languageCode, Paths& paths) {
    ReadDiagnosticProgram(platform, paths);
    MakeLinkFolder(platform, paths);
    ReadViewer(platform, languageCode, paths);
    ReadManualLibrary(platform, paths);
}

bool RereadInstallPaths(Platform& platform, const std::wstring& languageCode, Paths& paths) {
    const Paths before = paths;
    ReadInstallPaths(platform, languageCode, paths);
    for (const auto path : {&Paths::ProgramPath, &Paths::ProgramFilesDir, &Paths::ManualInstallDir}) {
        if ((paths.*path).empty() && !(before.*path).empty()) {
            paths = before;
            return false;
        }
    }
    return true;
}

}  // namespace mip
