#pragma once

#include <cstdint>
#include <stdexcept>
#include <string_view>

namespace mip {

/// A 16-bit or 32-bit result that does not fit.
class OverflowError : public std::overflow_error {
  public:
    OverflowError() : std::overflow_error("arithmetic overflow") {}
};

/// A text that is not a number (or not a date) where one is needed.
class ConversionError : public std::invalid_argument {
  public:
    ConversionError() : std::invalid_argument("text cannot be converted") {}
};

/// 16-bit signed arithmetic; throws OverflowError outside -32768 to 32767.
std::int16_t Add16(std::int16_t left, std::int16_t right);
std::int16_t Subtract16(std::int16_t left, std::int16_t right);
std::int16_t Multiply16(std::int16_t left, std::int16_t right);

/// A whole decimal number, an optional sign before it and blanks around it allowed. Throws ConversionError for
/// anything else and OverflowError for a number that does not fit.
std::int16_t TextToInt16(std::wstring_view text);
std::int32_t TextToInt32(std::wstring_view text);

}  // namespace mip
