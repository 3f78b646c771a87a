#include "text/Checked.h"

#include <limits>

#include "text/TextTools.h"

namespace mip {
namespace {

std::int16_t Narrow(std::int32_t value) {
    if (value < std::numeric_limits<std::int16_t>::min() || value > std::numeric_limits<std::int16_t>::max()) {
        throw OverflowError();
    }
    return static_cast<std::int16_t>(value);
}

/// The digits' value, counted down from 0 so that the lowest number has its place too.
std::int64_t ReadWholeNumber(std::wstring_view text) {
    constexpr std::int64_t limit = std::numeric_limits<std::int32_t>::min();
    text = TrimBlanks(text);
    const bool negative = text.starts_with(L'-');
    if (negative || text.starts_with(L'+')) {
        text.remove_prefix(1);
    }
    if (text.empty()) {
        throw ConversionError();
    }
    std::int64_t value = 0;
    for (const wchar_t digit : text) {
        if (digit < L'0' || digit > L'9') {
            throw ConversionError();
        }
        if (value >= limit) {
            value = value * 10 - (digit - L'0');
        }
    }
    return negative ? value : -value;
}

}  // namespace

std::int16_t Add16(std::int16_t left, std::int16_t right) {
    return Narrow(left + right);
}

std::int16_t Subtract16(std::int16_t left, std::int16_t right) {
    return Narrow(left - right);
}

std::int16_t Multiply16(std::int16_t left, std::int16_t right) {
    return Narrow(left * right);
}

std::int16_t TextToInt16(std::wstring_view text) {
    return Narrow(TextToInt32(text));
}

std::int32_t TextToInt32(std::wstring_view text) {
    const std::int64_t value = ReadWholeNumber(text);
    if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max()) {
        throw OverflowError();
    }
    return static_cast<std::int32_t>(value);
}

}  // namespace mip
