#include "app/ManualPlace.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "app/Program.h"
#include "app/modFile.h"
#include "platform/Files.h"
#include "platform/Shell.h"
#include "text/TextTools.h"

namespace mip {
namespace {

/// Where the system keeps its own files, and where all programs and users keep theirs (CSIDL numbers of the shell).
constexpr int WindowsFolder = 0x24;
constexpr int SharedHomes[] = {0x26 /* Program Files */, 0x23 /* common application data */, 0x28 /* user profile */};

bool IsPlainPart(std::wstring_view part) {
    const auto isForbidden = [](wchar_t character) {
        return character < L' ' || std::wstring_view(L"\"<>|?*:/").find(character) != std::wstring_view::npos;
    };
    return !part.empty() && part.back() != L' ' && part.back() != L'.' && std::ranges::none_of(part, isForbidden);
}

/// Length of the drive ("C:") or share ("\\server\share") that a path begins with, 0 when it begins with neither.
std::size_t RootLength(const std::wstring& path) {
    const auto isLetter = [](wchar_t character) {
        return (character >= L'A' && character <= L'Z') || (character >= L'a' && character <= L'z');
    };
    if (path.size() >= 2 && isLetter(path[0]) && path[1] == L':') {
        return 2;
    }
    const std::size_t server = path.starts_with(L"\\\\") ? path.find(L'\\', 2) : std::wstring::npos;
    if (server == std::wstring::npos) {
        return 0;
    }
    const std::size_t end = std::min(path.find(L'\\', server + 1), path.size());
    const bool isShare = IsPlainPart(std::wstring_view(path).substr(2, server - 2)) &&
                         IsPlainPart(std::wstring_view(path).substr(server + 1, end - server - 1));
    return isShare ? end : 0;
}

std::wstring WithEndingBackslash(const std::wstring& folder) {
    return ToUpper(folder.ends_with(L'\\') ? folder : folder + L'\\');
}

/// True when `inner` is `outer` or lies below it.
bool IsWithin(const std::wstring& inner, const std::wstring& outer) {
    return !outer.empty() && WithEndingBackslash(inner).starts_with(WithEndingBackslash(outer));
}

bool IsWithinSystem(Platform& platform, const Paths& paths, const std::wstring& folder) {
    return IsWithin(folder, platform.Shell.SpecialFolder(WindowsFolder)) ||
           IsWithin(folder, paths.SystemDrive + L"\\Windows");
}

std::vector<std::wstring> Homes(Platform& platform, const Paths& paths) {
    std::vector<std::wstring> homes{paths.ProgramFolder, paths.ProgramPath,    paths.ProgramFilesDir,
                                    paths.InstallDir,    paths.LinkFolderPath, paths.ViewerInstallDir,
                                    paths.UnZipTempPath, L"C:\\man_info"};
    for (const int number : SharedHomes) {
        homes.push_back(platform.Shell.SpecialFolder(number));
    }
    return homes;
}

bool WasMadeByThisRun(const Installation& run, const std::wstring& folder) {
    return std::ranges::any_of(run.MadeFolders,
                               [&](const std::wstring& made) { return ToUpper(made) == ToUpper(folder); });
}

}  // namespace

bool IsPlainPath(const std::wstring& path) {
    std::size_t at = RootLength(path);
    if (at == 0 || at == path.size()) {
        return false;
    }
    while (at < path.size()) {
        const std::size_t end = std::min(path.find(L'\\', at + 1), path.size());
        if (path[at] != L'\\' || !IsPlainPart(std::wstring_view(path).substr(at + 1, end - at - 1))) {
            return false;
        }
        at = end;
    }
    return true;
}

bool IsRootForManuals(Platform& platform, const Paths& paths, const std::wstring& folder) {
    const std::wstring trimmed = folder.ends_with(L'\\') ? folder.substr(0, folder.size() - 1) : folder;
    const std::size_t root = RootLength(trimmed);
    return (IsPlainPath(trimmed) || (root != 0 && root == trimmed.size())) && !IsWithinSystem(platform, paths, trimmed);
}

std::wstring WhyLeftAlone(const Program& program, const std::wstring& folder) {
    if (!IsPlainPath(folder)) {
        return L"not the path of a folder below a drive";
    }
    if (IsWithinSystem(program.Platform, program.Paths, folder)) {
        return L"within the system's folder";
    }
    if (std::ranges::any_of(Homes(program.Platform, program.Paths),
                            [&](const std::wstring& home) { return IsWithin(home, folder); })) {
        return L"holds folders of the system or of programs";
    }
    Folders& folders = program.Platform.Folders;
    if (folders.IsLink(folder)) {
        return L"a link to another folder";
    }
    const bool isManual =
        folders.Exists(JoinPath(folder, L"contents")) || WasMadeByThisRun(program.Installation, folder);
    return isManual || !folders.Exists(folder) ? L"" : L"no folder of a manual";
}

bool MayTouchFolder(Program& program, const std::wstring& folder) {
    const std::wstring reason = WhyLeftAlone(program, folder);
    if (!reason.empty()) {
        program.Log.Write(L"left alone", L"", folder + L": " + reason);
    }
    return reason.empty();
}

}  // namespace mip
