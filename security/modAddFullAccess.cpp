#include "security/modAddFullAccess.h"

#include "app/Program.h"
#include "platform/Files.h"
#include "platform/MessageBoxes.h"
#include "platform/PlatformError.h"
#include "text/TextTools.h"

namespace mip {

namespace {

constexpr std::uint32_t AllFileRights = 0x001F01FF;
constexpr std::uint32_t SetAccess = 2;
constexpr std::uint32_t NoInheritance = 0;

// Network-management errors have their texts in a library of their own.
constexpr std::uint32_t FirstNetworkError = 2100;
constexpr std::uint32_t LastNetworkError = 2999;
constexpr wchar_t NetworkMessageLibrary[] = L"C:\\WINNT\\SYSTEM32\\NETMSG.DLL";

}  // namespace

bool IsNtfsVolume(Platform& platform, const std::wstring& path) {
    try {
        const std::wstring fileSystem = platform.Volumes.FileSystemName(ToUpper(path.substr(0, 3)));
        return ToUpper(fileSystem.substr(0, 4)) == L"NTFS";
    } catch (const PlatformError& error) {
        platform.FaultLog.Trapped("asking for the file system", error);
        return false;
    }
}

void MergeIntoAccessList(AccessControl& accessControl, const std::wstring& path, const ExplicitAccess& entry) {
    const auto current = accessControl.ReadList(path);
    const auto merged = accessControl.MergeEntry(*current, entry);
    accessControl.SetList(path, *merged);
}

bool GrantFullAccess(Platform& platform, const Identity& identity, const std::wstring& path) {
    if (!IsNtfsVolume(platform, path)) {
        return true;
    }
    const ExplicitAccess fullControl{CutAtNul(identity.FullAccessTrustee), AllFileRights, SetAccess, NoInheritance};
    try {
        MergeIntoAccessList(platform.AccessControl, path, fullControl);
        return true;
    } catch (const PlatformError& error) {
        platform.FaultLog.Trapped("granting full access", error);
        ShowApiError(platform, error.Code());
        return false;
    }
}

std::wstring GetApiErrorText(Platform& platform, std::uint32_t code) {
    const bool isNetworkError = code >= FirstNetworkError && code <= LastNetworkError;
    return CutAtNul(platform.AccessControl.MessageText(code, isNetworkError ? NetworkMessageLibrary : L""));
}

void ShowApiError(Platform& platform, std::uint32_t code) {
    platform.MessageBoxes.Show(GetApiErrorText(platform, code), boxes::Ok, L"");
}

}  // namespace mip
