#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace mip {

struct Platform;
struct Program;

inline constexpr wchar_t SystemSection[] = L"SYSTEM INFORMATION";
inline constexpr wchar_t ColumnLengthSection[] = L"MDB COLUMN LENGTH";
inline constexpr wchar_t MessageSection[] = L"MESSAGE";

/// One value of any initialisation file; "" when file, section or key is absent. At most 255 characters.
std::wstring GetProfileValue(Platform& platform, const std::wstring& file, const std::wstring& section,
                             const std::wstring& key);
/// The same for several keys of a section, read together.
std::vector<std::wstring> GetProfileValues(Platform& platform, const std::wstring& file, const std::wstring& section,
                                           const std::vector<std::wstring>& keys);
/// One value of SysParameter.ini.
std::wstring GetSystemParameter(const Program& program, const std::wstring& key, const std::wstring& section);
/// One value of the language's message file, or of M09.ini when the language has no file. What cannot be read is taken
/// from the messages that were kept.
std::wstring GetMessageIniValue(const Program& program, const std::wstring& section, const std::wstring& key);
/// Keeps all messages of the language for when they cannot be read from the disc any more.
void KeepMessageTexts(Program& program);
/// The message of a number, as stored; "" when there is none.
std::wstring GetMessageText(const Program& program, std::int16_t number);

/// Loads Program::Settings. False when a number cannot be read; keys after it stay unread.
[[nodiscard]] bool ReadSystemParameters(Program& program);

}  // namespace mip
