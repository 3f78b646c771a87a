#pragma once

#include <cstddef>
#include <string>

namespace mip {

/// A path as the system takes it at any length: above 240 characters (folders have less room than files) with the
/// prefix that lifts the limit. The path must be absolute, its parts joined by single backslashes.
inline std::wstring LongPath(const std::wstring& path) {
    constexpr std::size_t Limit = 240;
    if (path.size() <= Limit || path.starts_with(L"\\\\?\\")) {
        return path;
    }
    return path.starts_with(L"\\\\") ? L"\\\\?\\UNC" + path.substr(1) : L"\\\\?\\" + path;
}

}  // namespace mip
