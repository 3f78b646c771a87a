#pragma once

#include <string>
#include <string_view>

#include "text/DateTime.h"

namespace mip {

/// "yyyy/mm/dd hh:nn:ss", the form in which dates are put into statements and compared.
std::wstring FormatDateTime(DateTime time);
/// "Mmm yyyy", English month name abbreviated.
std::wstring FormatMonthYear(DateTime time);
/// Reads "yyyy/mm/dd" or "yyyy-mm-dd", optionally followed by a blank and "hh:mm:ss"; month, day and hour may lack
/// their leading zero, and blanks around are allowed. Throws ConversionError for anything else, impossible dates
/// included.
DateTime ParseDateTime(std::wstring_view text);

}  // namespace mip
