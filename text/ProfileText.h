#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mip {

/// The value of a key in an initialisation file's text, by the rules of the system's profile services: of the first
/// such key in such a section, case does not matter, surrounding blanks and one pair of quotes are taken away, a line
/// that begins with a semicolon says nothing. "" when section or key is absent.
std::wstring ProfileValue(std::wstring_view text, std::wstring_view section, std::wstring_view key);
/// The value in a line "key = value" when it is that key's, which is given in capitals; by the same rules.
std::optional<std::wstring_view> ProfileLineValue(std::wstring_view line, std::wstring_view upperKey);
/// The text of an initialisation file as those services see it: UTF-16 behind the mark FF FE. They know no other mark.
/// False for a file that is in the computer's code page.
bool IsUtf16Profile(std::string_view bytes);
std::wstring Utf16ProfileText(std::string_view bytes);
/// The bytes of an initialisation file that every computer reads alike: ASCII where that is enough, else UTF-16 with
/// the mark.
std::string ProfileBytes(std::wstring_view text);

}  // namespace mip
