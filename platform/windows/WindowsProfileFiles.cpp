#include "platform/windows/WindowsProfileFiles.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include <windows.h>

#include "text/ProfileText.h"
#include "text/TextTools.h"

namespace mip {

namespace {

// Characters; the last is what the profile services give at most in one call. Few sections are larger than the first.
constexpr DWORD sectionSizes[] = {1024, 32 * 1024};

/// The section's lines "key=value", each ended by a NUL, without its comments. Nothing when there are too many.
std::optional<std::wstring> ReadSection(const std::wstring& section, const std::wstring& file) {
    std::wstring lines;
    for (const DWORD size : sectionSizes) {
        lines.resize(size);
        lines.resize(GetPrivateProfileSectionW(section.c_str(), lines.data(), size, file.c_str()));
        if (lines.size() < size - 2) {
            return lines;
        }
    }
    return std::nullopt;
}

/// The value of the first line with that key.
std::wstring_view FindValue(std::wstring_view lines, const std::wstring& key) {
    const std::wstring upperKey = ToUpper(key);
    while (!lines.empty()) {
        const std::wstring_view line = lines.substr(0, lines.find(L'\0'));
        lines.remove_prefix(std::min(line.size() + 1, lines.size()));
        if (const auto value = ProfileLineValue(line, upperKey)) {
            return *value;
        }
    }
    return {};
}

}  // namespace

std::wstring WindowsProfileFiles::ReadString(const std::wstring& section, const std::wstring& key,
                                             const std::wstring& file, std::size_t capacity) {
    std::vector<wchar_t> buffer(capacity);
    const DWORD length = GetPrivateProfileStringW(section.c_str(), key.c_str(), L"", buffer.data(),
                                                  static_cast<DWORD>(capacity), file.c_str());
    return std::wstring(buffer.data(), length);
}

std::vector<std::wstring> WindowsProfileFiles::ReadStrings(const std::wstring& section,
                                                           const std::vector<std::wstring>& keys,
                                                           const std::wstring& file, std::size_t capacity) {
    const std::optional<std::wstring> lines = ReadSection(section, file);
    std::vector<std::wstring> values;
    for (const std::wstring& key : keys) {
        values.push_back(lines ? std::wstring(FindValue(*lines, key).substr(0, capacity - 1))
                               : ReadString(section, key, file, capacity));
    }
    return values;
}

}  // namespace mip
