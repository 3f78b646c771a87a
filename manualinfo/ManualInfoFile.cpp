#include "manualinfo/ManualInfoFile.h"

#include "app/TextFile.h"
#include "text/Checked.h"
#include "text/DateText.h"
#include "text/TextTools.h"

namespace mip {

ManualInfoEntry ReadManualInfoEntry(const std::wstring& line) {
    const std::vector<std::wstring> fields = Split(line, L',');
    if (fields.size() < 6) {
        throw ConversionError();
    }
    const std::wstring firstDay = std::wstring(TrimBlanks(fields[5])) + L"/01";
    return {fields[0], fields[1], fields[3], ParseDateTime(firstDay)};
}

std::vector<ManualInfoEntry> ReadManualInfoEntries(Platform& platform, const std::wstring& file) {
    std::vector<ManualInfoEntry> entries;
    for (const std::wstring& line : ReadTextLines(platform, file)) {
        entries.push_back(ReadManualInfoEntry(line));
    }
    return entries;
}

}  // namespace mip
