#pragma once

#include <cstdint>
#include <string>

namespace mip {

struct Platform;

/// The language code of the user's default locale: "11" Japanese, "09" English, "04S" and "04T" Chinese, ...
/// English when the locale cannot be asked.
std::wstring GetLanguageCode(const Platform& platform);
/// Maps four hexadecimal digits of a language identifier to the code.
std::wstring LanguageCodeOf(const std::wstring& identifier);
std::uint16_t MakeLangId(std::uint16_t primary, std::uint16_t sub);
std::uint32_t MakeLcid(std::uint16_t languageId);

/// "MS Pゴシック" for Japanese, "Arial" otherwise.
std::wstring ScreenFont(const std::wstring& languageCode);

}  // namespace mip
