#pragma once

#include <string>
#include <string_view>

namespace mip {

/// The code point that stands for a malformed part.
inline constexpr char32_t ReplacementCharacter = 0xFFFD;

/// In a file, the byte that comes first in each unit of two.
enum class ByteOrder { LowFirst, HighFirst };

/// Takes the code point at the front of a text off it. wchar_t may be UTF-16 (Windows) or UTF-32; the text must not be
/// empty. A surrogate without its partner gives ReplacementCharacter.
char32_t TakeCodePoint(std::wstring_view& text);
void AppendCodePoint(std::wstring& text, char32_t codePoint);

/// The same for UTF-8 (RFC 3629): overlong forms, surrogates and cut sequences give ReplacementCharacter.
char32_t TakeUtf8(std::string_view& bytes);
void AppendUtf8(std::string& bytes, char32_t codePoint);

/// UTF-16 bytes as text; an odd last byte is ReplacementCharacter.
std::wstring FromUtf16(std::string_view bytes, ByteOrder order);

}  // namespace mip
