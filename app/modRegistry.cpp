#include "app/modRegistry.h"

#include "app/Program.h"

#include <cstddef>

#include "app/modFile.h"
#include "platform/Files.h"
#include "text/TextTools.h"

namespace mip {
namespace {

constexpr std::size_t LongestValue = 255;

std::wstring ReadMachineValue(const Program& program, const wchar_t* key, const wchar_t* valueName) {
    return ReadRegistryString(program.Platform.Registry, Hive::LocalMachine, key, valueName);
}

void ReadDiagnosticProgram(Program& program) {
    Paths& paths = program.Paths;
    paths.ProgramPath = ReadMachineValue(program, L"SOFTWARE\\VANTOR\\Korvex", L"ProgramPath");
    paths.ProgramFilesDir =
        ReadMachineValue(program, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion", L"ProgramFilesDir");
    paths.SystemDrive = program.Platform.Volumes.DriveName(paths.ProgramFilesDir);
    paths.LinkManualPath = JoinPath(paths.ProgramPath, L"Link\\Manual");
    paths.LinkPath = JoinPath(paths.ProgramPath, L"Link");
}

/// Without the diagnostic program the path has no drive, and no folder is made for it.
void MakeLinkFolder(Program& program) {
    const Paths& paths = program.Paths;
    if (!paths.ProgramPath.empty() && !program.Platform.Folders.Exists(paths.LinkPath)) {
        MakeFolder(program.Platform, paths.LinkPath);
    }
}

void ReadViewer(Program& program) {
    Paths& paths = program.Paths;
    paths.ViewerInstallDir = ReadMachineValue(program, L"SOFTWARE\\Vantor\\Korvex\\VantorView", L"InstallDir");
    if (paths.ViewerInstallDir.empty()) {
        const bool isJapanese = program.Identity.LanguageCode == L"11";
        paths.ViewerInstallDir =
            JoinPath(isJapanese ? L"C:\\Program Files" : paths.ProgramFilesDir, L"Vantor\\Korvex\\View");
    }
    paths.ViewerExePath = JoinPath(paths.ViewerInstallDir, L"VBrowser.exe");
}

void ReadManualLibrary(Program& program) {
    Paths& paths = program.Paths;
    paths.ManualInstallDir = ReadMachineValue(program, L"SOFTWARE\\Vantor\\Korvex\\ManualLink", L"InstallDir");
    paths.LinkFolderPath = JoinPath(paths.ProgramFilesDir, L"Vantor\\Korvex\\Link");
    paths.InstallDir = paths.ManualInstallDir;
    paths.UnZipTempPath = JoinPath(paths.ManualInstallDir, L"UnZipTemp");
}

}  // namespace

std::wstring ReadRegistryString(Registry& registry, Hive hive, const std::wstring& key, const std::wstring& valueName) {
    const std::wstring value = registry.ReadString(hive, key, valueName).value_or(L"");
    return CutAtNul(value).substr(0, LongestValue);
}

void ReadInstallPaths(Program& program) {
    ReadDiagnosticProgram(program);
    MakeLinkFolder(program);
    ReadViewer(program);
    ReadManualLibrary(program);
}

bool RereadInstallPaths(Program& program) {
    const Paths before = program.Paths;
    ReadInstallPaths(program);
    for (const auto path : {&Paths::ProgramPath, &Paths::ProgramFilesDir, &Paths::ManualInstallDir}) {
        if ((program.Paths.*path).empty() && !(before.*path).empty()) {
            program.Paths = before;
            return false;
        }
    }
    return true;
}

}  // namespace mip
