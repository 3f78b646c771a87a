#include "platform/windows/ProcessHardening.h"

#include <windows.h>

namespace mip {

void HardenProcess() {
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
    constexpr DWORD defaultFolders = 0x00001000;
    using SetFolders = BOOL(WINAPI*)(DWORD);
    const auto address =
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "SetDefaultDllDirectories"));
    if (address != nullptr) {
        reinterpret_cast<SetFolders>(address)(defaultFolders);
    }
    SetDllDirectoryW(L"");
}

}  // namespace mip
