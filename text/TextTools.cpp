#include "text/TextTools.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "text/UnicodeText.h"

namespace mip {
namespace {

/// A range of small letters, and how far below each of them its capital stands.
struct SmallLetters {
    wchar_t First;
    wchar_t Last;
    wchar_t Distance;
};

/// Latin, Greek, Cyrillic and full-width Latin: the alphabets of the languages that manuals come in. The text must not
/// depend on the C library's locale.
constexpr std::array smallLetters{
    SmallLetters{L'a', L'z', 32},     SmallLetters{0x00E0, 0x00F6, 32}, SmallLetters{0x00F8, 0x00FE, 32},
    SmallLetters{0x03B1, 0x03C1, 32}, SmallLetters{0x03C3, 0x03C9, 32}, SmallLetters{0x0430, 0x044F, 32},
    SmallLetters{0x0450, 0x045F, 80}, SmallLetters{0xFF41, 0xFF5A, 32},
};

wchar_t UpperOf(wchar_t character) {
    for (const SmallLetters& range : smallLetters) {
        if (character >= range.First && character <= range.Last) {
            return static_cast<wchar_t>(character - range.Distance);
        }
    }
    return character;
}

wchar_t AsciiUpperOf(wchar_t character) {
    return character >= L'a' && character <= L'z' ? static_cast<wchar_t>(character - L'a' + L'A') : character;
}

template <typename Change>
std::wstring Changed(std::wstring_view text, Change change) {
    std::wstring result(text);
    std::transform(result.begin(), result.end(), result.begin(), change);
    return result;
}

/// Appends the characters at the front that are ASCII, and so the same in every encoding, and takes them off the text.
template <typename Other, typename View>
void TakeAscii(Other& taken, View& text) {
    const auto end = std::ranges::find_if(text, [](auto unit) { return unit < 0 || unit > 0x7F; });
    const std::size_t before = taken.size();
    taken.resize(before + static_cast<std::size_t>(end - text.begin()));
    std::copy(text.begin(), end, taken.begin() + static_cast<std::ptrdiff_t>(before));
    text.remove_prefix(taken.size() - before);
}

}  // namespace

std::wstring ReplaceAll(std::wstring_view text, std::wstring_view from, std::wstring_view to) {
    if (from.empty()) {
        return std::wstring(text);
    }
    std::wstring result;
    std::size_t start = 0;
    for (std::size_t found = text.find(from); found != std::wstring_view::npos; found = text.find(from, start)) {
        result.append(text, start, found - start).append(to);
        start = found + from.size();
    }
    return result.append(text.substr(start));
}

std::wstring_view TrimBlanks(std::wstring_view text) {
    const std::size_t first = text.find_first_not_of(L' ');
    return first == std::wstring_view::npos ? std::wstring_view{}
                                            : text.substr(first, text.find_last_not_of(L' ') - first + 1);
}

std::wstring_view WithoutDoubleQuotes(std::wstring_view text) {
    const bool quoted = text.size() > 1 && text.front() == L'"' && text.back() == L'"';
    return quoted ? text.substr(1, text.size() - 2) : text;
}

std::vector<std::wstring> Split(std::wstring_view text, wchar_t separator) {
    std::vector<std::wstring> parts;
    std::size_t start = 0;
    for (std::size_t found = text.find(separator); found != std::wstring_view::npos;
         found = text.find(separator, start)) {
        parts.emplace_back(text.substr(start, found - start));
        start = found + 1;
    }
    parts.emplace_back(text.substr(start));
    return parts;
}

std::wstring ToUpper(std::wstring_view text) {
    return Changed(text, UpperOf);
}

std::wstring ToUpperAscii(std::wstring_view text) {
    return Changed(text, AsciiUpperOf);
}

bool EqualInAscii(std::wstring_view left, std::wstring_view right) {
    return std::ranges::equal(left, right, {}, AsciiUpperOf, AsciiUpperOf);
}

std::wstring PadWithZeros(int number, std::size_t width) {
    const std::string digits = std::to_string(number);
    std::wstring padded(width - std::min(width, digits.size()), L'0');
    return padded.append(digits.begin(), digits.end());
}

std::wstring CutAtNul(const std::wstring& text) {
    return text.substr(0, text.find(L'\0'));
}

std::string ToUtf8(std::wstring_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (TakeAscii(bytes, text); !text.empty(); TakeAscii(bytes, text)) {
        AppendUtf8(bytes, TakeCodePoint(text));
    }
    return bytes;
}

std::wstring FromUtf8(std::string_view bytes) {
    std::wstring text;
    text.reserve(bytes.size());
    for (TakeAscii(text, bytes); !bytes.empty(); TakeAscii(text, bytes)) {
        AppendCodePoint(text, TakeUtf8(bytes));
    }
    return text;
}

std::vector<std::wstring> SplitLines(std::wstring_view text) {
    std::vector<std::wstring> lines = Split(text, L'\n');
    if (lines.back().empty()) {
        lines.pop_back();
    }
    for (std::wstring& line : lines) {
        if (line.ends_with(L'\r')) {
            line.pop_back();
        }
    }
    return lines;
}

std::vector<std::wstring> SplitUtf8Lines(std::string_view bytes) {
    constexpr std::string_view Mark = "\xEF\xBB\xBF";
    return SplitLines(FromUtf8(bytes.substr(bytes.starts_with(Mark) ? Mark.size() : 0)));
}

}  // namespace mip
