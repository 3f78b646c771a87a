#include "platform/windows/WindowsVolumes.h"

#include <array>
#include <optional>

#include <windows.h>

#include "platform/DriveName.h"
#include "platform/Pacer.h"
#include "platform/windows/Handle.h"
#include "platform/windows/LastError.h"
#include "platform/windows/LongPath.h"
#include "platform/windows/WindowsClock.h"
#include "platform/windows/WindowsFiles.h"

namespace mip {

namespace {

constexpr DWORD ShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// The path by which the folder's volume opens as a device, or "" for a share.
std::wstring DeviceOf(const std::wstring& folder) {
    std::array<wchar_t, MAX_PATH + 1> root{};
    std::array<wchar_t, MAX_PATH + 1> name{};
    const auto size = static_cast<DWORD>(root.size());
    if (!GetVolumePathNameW(LongPath(folder).c_str(), root.data(), size) ||
        !GetVolumeNameForVolumeMountPointW(root.data(), name.data(), size)) {
        return L"";
    }
    const std::wstring device = name.data();
    return device.substr(0, device.find_last_not_of(L'\\') + 1);
}

/// One call for all of a volume; it takes an administrator. False when it cannot be done.
bool FlushVolume(const std::wstring& device) {
    const FileHandle volume(CreateFileW(device.c_str(), GENERIC_READ | GENERIC_WRITE,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
    return volume && FlushFileBuffers(volume.Get());
}

/// The serial number of the volume on which a path, or the nearest folder above it that exists, lies.
std::optional<DWORD> VolumeSerial(std::wstring path) {
    while (!path.empty()) {
        const FileHandle object(CreateFileW(LongPath(path + L"\\").c_str(), 0, ShareAll, nullptr, OPEN_EXISTING,
                                            FILE_FLAG_BACKUP_SEMANTICS, nullptr));
        BY_HANDLE_FILE_INFORMATION information{};
        if (object) {
            return GetFileInformationByHandle(object.Get(), &information)
                       ? std::optional(information.dwVolumeSerialNumber)
                       : std::nullopt;
        }
        path.erase(path.find_last_of(L'\\') == path.npos ? 0 : path.find_last_of(L'\\'));
    }
    return std::nullopt;
}

/// Flushes a file or a folder's own entries. What does not open for writing (read-only, or held by another program) was
/// not just written here and is passed over, and so is what its server or file system has no way to flush.
void FlushObject(const std::wstring& path) {
    const FileHandle object(CreateFileW(LongPath(path).c_str(), GENERIC_WRITE, ShareAll, nullptr, OPEN_EXISTING,
                                        FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (!object || FlushFileBuffers(object.Get())) {
        return;
    }
    const DWORD code = GetLastError();
    if (code != ERROR_NOT_SUPPORTED && code != ERROR_INVALID_FUNCTION) {
        throw PlatformError("FlushFileBuffers", path, code);
    }
}

void FlushBelow(const std::wstring& folder, Pacer& pacer) {
    const FolderListing listing = WindowsFolders().List(folder);
    for (const std::wstring& name : listing.Files) {
        FlushObject(folder + L'\\' + name);
        pacer.Tick();
    }
    for (const std::wstring& name : listing.Subfolders) {
        FlushBelow(folder + L'\\' + name, pacer);
    }
    FlushObject(folder);
}

}  // namespace

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

bool WindowsVolumes::IsOneVolume(const std::wstring& one, const std::wstring& other) {
    if (CompareStringOrdinal(DriveName(one).c_str(), -1, DriveName(other).c_str(), -1, TRUE) != CSTR_EQUAL) {
        return false;
    }
    const std::optional<DWORD> serial = VolumeSerial(one);
    return serial && serial == VolumeSerial(other);
}

void WindowsVolumes::Flush(const std::wstring& folder) {
    if (GetFileAttributesW(LongPath(folder).c_str()) == INVALID_FILE_ATTRIBUTES) {
        ThrowLastError("GetFileAttributes", folder);
    }
    const std::wstring device = DeviceOf(folder);
    if (device.empty() || !FlushVolume(device)) {
        WindowsClock clock;
        Pacer pacer(clock);
        FlushBelow(folder, pacer);
    }
}

}  // namespace mip
