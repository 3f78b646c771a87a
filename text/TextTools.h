#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace mip {

/// Every occurrence of `from` replaced by `to`, left to right, case-sensitive. An empty `from` changes nothing.
std::wstring ReplaceAll(std::wstring_view text, std::wstring_view from, std::wstring_view to);
/// Leading and trailing blanks removed.
std::wstring_view TrimBlanks(std::wstring_view text);
/// A text in double quotes without them.
std::wstring_view WithoutDoubleQuotes(std::wstring_view text);
/// The parts between separators; one part more than there are separators.
std::vector<std::wstring> Split(std::wstring_view text, wchar_t separator);
std::wstring ToUpper(std::wstring_view text);
/// Capitals in place of the letters a to z only, as the names of devices, switches and file types are compared.
std::wstring ToUpperAscii(std::wstring_view text);
/// Whether two texts are the same when these letters are.
bool EqualInAscii(std::wstring_view left, std::wstring_view right);
/// A number with zeros before it, up to the width.
std::wstring PadWithZeros(int number, std::size_t width);
/// The text before the first NUL.
std::wstring CutAtNul(const std::wstring& text);
/// UTF-8 to and from text; malformed parts become U+FFFD.
std::string ToUtf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view bytes);
/// The lines of a text, without their CR LF or LF; a last line without an end counts when it is not empty.
std::vector<std::wstring> SplitLines(std::wstring_view text);
/// The lines of a UTF-8 text, which may begin with the mark EF BB BF.
std::vector<std::wstring> SplitUtf8Lines(std::string_view bytes);

}  // namespace mip
