#include "platform/windows/WindowsVolumes.h"

#include <array>

#include <windows.h>

#include "platform/DriveName.h"
#include "platform/windows/LastError.h"

namespace mip {

std::wstring WindowsVolumes::DriveName(const std::wstring& path) {
    return DriveNameOf(path);
}

double WindowsVolumes::FreeBytes(const std::wstring& root) {
    DWORD sectorsPerCluster = 0;
    DWORD bytesPerSector = 0;
    DWORD freeClusters = 0;
    DWORD allClusters = 0;
    if (!GetDiskFreeSpaceW(root.c_str(), &sectorsPerCluster, &bytesPerSector, &freeClusters, &allClusters)) {
        ThrowLastError("GetDiskFreeSpace", root);
    }
    return static_cast<double>(sectorsPerCluster) * bytesPerSector * freeClusters;
}

std::wstring WindowsVolumes::FileSystemName(const std::wstring& root) {
    std::array<wchar_t, MAX_PATH + 1> name{};
    if (!GetVolumeInformationW(root.c_str(), nullptr, 0, nullptr, nullptr, nullptr, name.data(),
                               static_cast<DWORD>(name.size()))) {
        ThrowLastError("GetVolumeInformation", root);
    }
    return name.data();
}

}  // namespace mip
