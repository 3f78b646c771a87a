#include "platform/archive/EntryName.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "platform/archive/BadArchive.h"
#include "text/TextTools.h"

namespace mip {

namespace {

constexpr std::size_t MaximumPart = 255;   // the file system's limit for one name
constexpr std::size_t MaximumName = 4096;  // far above any manual's, and keeps folders from nesting without end

bool IsForbidden(wchar_t character) {
    return character < L' ' || std::wstring_view(L"<>:\"|?*").find(character) != std::wstring_view::npos;
}

/// COM and LPT are devices with the digits 1 to 9 and with the superscripts 1, 2 and 3.
bool IsPortDigit(wchar_t character) {
    return (character >= L'1' && character <= L'9') || character == L'\u00B9' || character == L'\u00B2' ||
           character == L'\u00B3';
}

/// Windows sees the device behind any extension, and behind blanks before it.
bool IsDeviceName(std::wstring_view part) {
    part = part.substr(0, part.find(L'.'));
    part = part.substr(0, part.find_last_not_of(L' ') + 1);
    const std::wstring stem = ToUpperAscii(part);
    if (stem.size() == 4 && (stem.starts_with(L"COM") || stem.starts_with(L"LPT"))) {
        return IsPortDigit(stem[3]);
    }
    constexpr std::array<std::wstring_view, 6> Devices = {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"};
    return std::ranges::find(Devices, stem) != Devices.end();
}

/// "." and ".." fall under the dot at the end.
bool IsAcceptablePart(std::wstring_view part) {
    return !part.empty() && part.size() <= MaximumPart && part.back() != L'.' && part.back() != L' ' &&
           std::ranges::none_of(part, IsForbidden) && !IsDeviceName(part);
}

}  // namespace

std::wstring CheckedEntryName(std::wstring_view name) {
    std::wstring path(name);
    std::ranges::replace(path, L'/', L'\\');
    if (path.ends_with(L'\\')) {
        path.pop_back();
    }
    for (std::size_t start = 0; start <= path.size();) {
        const std::size_t end = std::min(path.find(L'\\', start), path.size());
        if (!IsAcceptablePart(std::wstring_view(path).substr(start, end - start))) {
            throw BadArchive("checking an entry's name", std::wstring(name));
        }
        start = end + 1;
    }
    if (path.size() > MaximumName) {
        throw BadArchive("checking the length of an entry's name", std::move(path));
    }
    return path;
}

}  // namespace mip
