#pragma once

#include <cstddef>
#include <string>

#include <windows.h>

namespace mip {

/// A path as the system takes it at any length: above 240 characters (folders have less room than files) with the
/// prefix that lifts the limit. Behind the prefix nothing is tidied by the system, so doubled backslashes and the like
/// are resolved here.
inline std::wstring LongPath(const std::wstring& path) {
    constexpr std::size_t Limit = 240;
    if (path.size() <= Limit || path.starts_with(L"\\\\?\\")) {
        return path;
    }
    std::wstring full(path.size() + MAX_PATH, L'\0');
    const DWORD length = GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    full = length == 0 || length > full.size() ? path : full.substr(0, length);
    return full.starts_with(L"\\\\") ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

}  // namespace mip
