#include "platform/windows/WindowsFileVersions.h"

#include <windows.h>

#include <vector>

#include "platform/windows/LastError.h"

namespace mip {

FixedFileVersion WindowsFileVersions::Read(const std::wstring& path) {
    DWORD unused = 0;
    const DWORD size = GetFileVersionInfoSizeW(path.c_str(), &unused);
    if (size == 0) {
        ThrowLastError("GetFileVersionInfoSize", path);
    }
    std::vector<BYTE> resource(size);
    if (!GetFileVersionInfoW(path.c_str(), 0, size, resource.data())) {
        ThrowLastError("GetFileVersionInfo", path);
    }
    void* fixed = nullptr;
    UINT length = 0;
    if (!VerQueryValueW(resource.data(), L"\\", &fixed, &length) || length < sizeof(VS_FIXEDFILEINFO)) {
        throw PlatformError("VerQueryValue", path, ERROR_RESOURCE_DATA_NOT_FOUND);
    }
    const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(fixed);
    return {info.dwFileVersionMS, info.dwFileVersionLS};
}

}  // namespace mip
