#include "platform/windows/WindowsProfileFiles.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include <windows.h>

#include "text/ProfileText.h"
#include "text/TextTools.h"

namespace mip {

namespace {

constexpr std::size_t SectionSize = 32 * 1024;  // characters; what the profile services give at most in one call

/// The section's lines "key=value", each ended by a NUL, without its comments.
std::wstring ReadSection(const std::wstring& section, const std::wstring& file) {
    std::wstring lines(SectionSize, L'\0');
    lines.resize(GetPrivateProfileSectionW(section.c_str(), lines.data(), SectionSize, file.c_str()));
    return lines;
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
    const std::wstring lines = ReadSection(section, file);
    const bool isWhole = lines.size() < SectionSize - 2;
    std::vector<std::wstring> values;
    for (const std::wstring& key : keys) {
        values.push_back(isWhole ? std::wstring(FindValue(lines, key).substr(0, capacity - 1))
                                 : ReadString(section, key, file, capacity));
    }
    return values;
}

}  // namespace mip
