#pragma once

#include <cstdint>
#include <string>

#include "platform/Database.h"

namespace mip {

/// A field as text; a date in the form of FormatDateTime, Null as "".
std::wstring FieldText(FieldValue value);
/// A field, or its text, as a number. Throws ConversionError and OverflowError.
std::int16_t FieldInt16(const FieldValue& value);
/// A field, or its text, as a date. Throws ConversionError.
DateTime FieldDate(const FieldValue& value);

}  // namespace mip
