#include "text/ProfileText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "text/TextTools.h"
#include "text/UnicodeText.h"

namespace mip {
namespace {

constexpr std::string_view Utf16Mark = "\xFF\xFE";

std::wstring_view Trim(std::wstring_view text) {
    const std::size_t start = std::min(text.find_first_not_of(L" \t"), text.size());
    return text.substr(start, text.find_last_not_of(L" \t") + 1 - start);
}

std::wstring_view SectionName(std::wstring_view line) {
    return Trim(line.substr(1, line.rfind(L']') - 1));
}

std::wstring_view WithoutQuotes(std::wstring_view value) {
    const bool quoted =
        value.size() > 1 && value.front() == value.back() && (value.front() == L'"' || value.front() == L'\'');
    return quoted ? value.substr(1, value.size() - 2) : value;
}

void AppendUtf16(std::string& bytes, char32_t unit) {
    bytes += static_cast<char>(unit & 0xFFU);
    bytes += static_cast<char>(unit >> 8U);
}

}  // namespace

std::optional<std::wstring_view> ProfileLineValue(std::wstring_view line, std::wstring_view upperKey) {
    const std::size_t equals = std::min(line.find(L'='), line.size());
    if (ToUpper(Trim(line.substr(0, equals))) != upperKey) {
        return std::nullopt;
    }
    return WithoutQuotes(Trim(line.substr(std::min(equals + 1, line.size()))));
}

std::wstring ProfileValue(std::wstring_view text, std::wstring_view section, std::wstring_view key) {
    const std::wstring wantedSection = ToUpper(section);
    const std::wstring wantedKey = ToUpper(key);
    bool inSection = false;
    for (const std::wstring& each : SplitLines(text)) {
        const std::wstring_view line = Trim(each);
        if (line.starts_with(L'[')) {
            if (inSection) {
                break;  // only the first section of a name is read
            }
            inSection = ToUpper(SectionName(line)) == wantedSection;
        } else if (const auto value = inSection ? ProfileLineValue(line, wantedKey) : std::nullopt) {
            return std::wstring(*value);
        }
    }
    return {};
}

bool IsUtf16Profile(std::string_view bytes) {
    return bytes.starts_with(Utf16Mark);
}

std::wstring Utf16ProfileText(std::string_view bytes) {
    return FromUtf16(bytes.substr(Utf16Mark.size()), ByteOrder::LowFirst);
}

std::string ProfileBytes(std::wstring_view text) {
    if (std::ranges::all_of(text, [](wchar_t character) { return static_cast<std::uint32_t>(character) < 0x80; })) {
        return {text.begin(), text.end()};
    }
    std::string bytes(Utf16Mark);
    while (!text.empty()) {
        const char32_t point = TakeCodePoint(text);
        if (point > 0xFFFF) {
            AppendUtf16(bytes, 0xD800 + ((point - 0x10000) >> 10U));
            AppendUtf16(bytes, 0xDC00 + ((point - 0x10000) & 0x3FFU));
        } else {
            AppendUtf16(bytes, point);
        }
    }
    return bytes;
}

}  // namespace mip
