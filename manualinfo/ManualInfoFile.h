#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "text/DateTime.h"

namespace mip {

struct Platform;

/// One line of a manual information file. Fields 2 and 4 are not used.
struct ManualInfoEntry {
    std::wstring Field0;
    std::wstring Field1;
    std::wstring Key;  ///< field 3, also the manual's folder on the disc
    DateTime Date;     ///< field 5, "yyyy/mm": the first day of that month
};

/// Throws ConversionError for a line that is none.
ManualInfoEntry ReadManualInfoEntry(const std::wstring& line);
/// All lines of a file. Throws PlatformError when it cannot be read, and ConversionError.
std::vector<ManualInfoEntry> ReadManualInfoEntries(Platform& platform, const std::wstring& file);

}  // namespace mip
