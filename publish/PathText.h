#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "text/TextTools.h"

namespace mip {

/// A path of this computer from and to text. Not by path::wstring(): that is bound to the C library's locale on some
/// systems.
inline std::filesystem::path PathOf(std::wstring_view text) {
    const std::string bytes = ToUtf8(text);
    return std::u8string(bytes.begin(), bytes.end());
}
/// UTF-8, parts joined by slashes.
inline std::string Utf8Of(const std::filesystem::path& path) {
    const std::u8string text = path.generic_u8string();
    return {text.begin(), text.end()};
}
inline std::wstring TextOf(const std::filesystem::path& path) {
    return FromUtf8(Utf8Of(path));
}

}  // namespace mip
