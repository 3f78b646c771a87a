#pragma once

#include <optional>
#include <string>

namespace mip {

struct SevenZipCommand {
    std::wstring Archive;
    std::wstring OutputFolder;  ///< without a backslash at its end, but for a drive's root
};

/// Reads "x -aoa -hide ARCHIVE FOLDER". Blanks separate arguments, double quotes keep blanks inside one (there is no
/// escape: a backslash is a backslash), switches may stand anywhere and in either case. Nothing for any other command.
std::optional<SevenZipCommand> ParseSevenZipCommand(const std::wstring& commandLine);

}  // namespace mip
