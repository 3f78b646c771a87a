#include "text/UnicodeText.h"

#include <cstddef>
#include <cstdint>

namespace mip {
namespace {

constexpr char32_t FirstHighSurrogate = 0xD800;
constexpr char32_t FirstLowSurrogate = 0xDC00;
constexpr char32_t LastSurrogate = 0xDFFF;
constexpr char32_t LastCodePoint = 0x10FFFF;

bool IsHighSurrogate(char32_t unit) {
    return unit >= FirstHighSurrogate && unit < FirstLowSurrogate;
}

bool IsLowSurrogate(char32_t unit) {
    return unit >= FirstLowSurrogate && unit <= LastSurrogate;
}

bool IsCodePoint(char32_t value) {
    return value <= LastCodePoint && !IsHighSurrogate(value) && !IsLowSurrogate(value);
}

char32_t Joined(char32_t high, char32_t low) {
    return 0x10000 + ((high - FirstHighSurrogate) << 10) + (low - FirstLowSurrogate);
}

/// What a UTF-8 lead byte says: how many bytes follow, its own bits, and the least code point of that length.
struct Lead {
    std::size_t Following = 0;
    char32_t Bits = 0;
    char32_t Least = 0;
};

Lead ReadLead(std::uint8_t byte) {
    if (byte < 0x80) {
        return {0, byte, 0};
    }
    if (byte >= 0xC0 && byte < 0xE0) {
        return {1, byte & 0x1Fu, 0x80};
    }
    if (byte >= 0xE0 && byte < 0xF0) {
        return {2, byte & 0x0Fu, 0x800};
    }
    if (byte >= 0xF0 && byte < 0xF8) {
        return {3, byte & 0x07u, 0x10000};
    }
    return {0, ReplacementCharacter, 0};
}

}  // namespace

char32_t TakeCodePoint(std::wstring_view& text) {
    const auto unit = static_cast<char32_t>(text.front());
    text.remove_prefix(1);
    if (IsHighSurrogate(unit) && !text.empty() && IsLowSurrogate(static_cast<char32_t>(text.front()))) {
        const auto low = static_cast<char32_t>(text.front());
        text.remove_prefix(1);
        return Joined(unit, low);
    }
    return IsCodePoint(unit) ? unit : ReplacementCharacter;
}

void AppendCodePoint(std::wstring& text, char32_t codePoint) {
    if (sizeof(wchar_t) == 2 && codePoint > 0xFFFF) {
        text += static_cast<wchar_t>(FirstHighSurrogate + ((codePoint - 0x10000) >> 10));
        text += static_cast<wchar_t>(FirstLowSurrogate + ((codePoint - 0x10000) & 0x3FF));
    } else {
        text += static_cast<wchar_t>(codePoint);
    }
}

char32_t TakeUtf8(std::string_view& bytes) {
    const Lead lead = ReadLead(static_cast<std::uint8_t>(bytes.front()));
    bytes.remove_prefix(1);
    char32_t codePoint = lead.Bits;
    for (std::size_t taken = 0; taken < lead.Following; ++taken) {
        if (bytes.empty() || (static_cast<std::uint8_t>(bytes.front()) & 0xC0) != 0x80) {
            return ReplacementCharacter;
        }
        codePoint = (codePoint << 6) | (static_cast<std::uint8_t>(bytes.front()) & 0x3Fu);
        bytes.remove_prefix(1);
    }
    return codePoint >= lead.Least && IsCodePoint(codePoint) ? codePoint : ReplacementCharacter;
}

void AppendUtf8(std::string& bytes, char32_t codePoint) {
    const auto following = [&bytes, codePoint](int shift) {
        bytes += static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
    };
    if (codePoint < 0x80) {
        bytes += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        bytes += static_cast<char>(0xC0 | (codePoint >> 6));
        following(0);
    } else if (codePoint < 0x10000) {
        bytes += static_cast<char>(0xE0 | (codePoint >> 12));
        following(6);
        following(0);
    } else {
        bytes += static_cast<char>(0xF0 | (codePoint >> 18));
        following(12);
        following(6);
        following(0);
    }
}

std::wstring FromUtf16(std::string_view bytes, ByteOrder order) {
    const std::size_t lowAt = order == ByteOrder::LowFirst ? 0 : 1;
    std::wstring units;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const auto low = static_cast<std::uint8_t>(bytes[at + lowAt]);
        const auto high = static_cast<std::uint8_t>(bytes[at + 1 - lowAt]);
        units += static_cast<wchar_t>(high << 8 | low);
    }
    if (bytes.size() % 2 != 0) {
        units += static_cast<wchar_t>(ReplacementCharacter);
    }
    std::wstring text;
    for (std::wstring_view rest = units; !rest.empty();) {
        AppendCodePoint(text, TakeCodePoint(rest));
    }
    return text;
}

}  // namespace mip
