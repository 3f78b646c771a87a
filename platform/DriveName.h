#pragma once

#include <string>
#include <string_view>

namespace mip {

/// What Volumes::DriveName answers: "D:" of a path with a drive letter, "\\server\share" of a UNC path, "" of others.
inline std::wstring DriveNameOf(std::wstring_view path) {
    const auto isSeparator = [](wchar_t c) { return c == L'\\' || c == L'/'; };
    const auto isLetter = [](wchar_t c) { return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z'); };
    if (path.size() >= 2 && path[1] == L':' && isLetter(path[0])) {
        return std::wstring(path.substr(0, 2));
    }
    if (path.size() < 2 || !isSeparator(path[0]) || !isSeparator(path[1])) {
        return L"";
    }
    const std::size_t server = path.find_first_of(L"\\/", 2);
    if (server == std::wstring_view::npos || server == 2 || server + 1 == path.size()) {
        return L"";
    }
    const std::size_t share = path.find_first_of(L"\\/", server + 1);
    return share == server + 1 ? L"" : std::wstring(path.substr(0, share));
}

}  // namespace mip
