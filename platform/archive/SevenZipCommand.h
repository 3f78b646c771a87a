#pragma once

#include <optional>
#include <string>

namespace mip {

struct SevenZipCommand {
    std::wstring Archive;
    std::wstring OutputFolder;  ///< without a backslash at its end, but for a drive's root
};

/// Reads "x -aoa -hide ARCHIVE FOLDER". The last argument is the folder, in double quotes where it holds blanks (there
/// is no escape: a backslash is a backslash). All that stands between the switches and the folder is the archive's
/// path, blanks included; it may be quoted as a whole. Switches come in any order and in either case. Nothing for any
/// other command.
std::optional<SevenZipCommand> ParseSevenZipCommand(const std::wstring& commandLine);

}  // namespace mip
