#pragma once

#include <optional>
#include <string>
#include <vector>

namespace mip {

struct Paths;
struct Platform;
struct Program;

/// What comparing the disc's manual information with the local copy found.
struct ManualInfoCheck {
    bool MayOpen = true;                        ///< false: the user must be asked
    std::vector<std::wstring> OlderEntryLines;  ///< the disc's entries that are older than the local copy
};

/// Compares the disc's file with the copy in C:\man_info and replaces the copy when the disc is newer. Nothing,
/// after a box, when the folder cannot be made.
std::optional<ManualInfoCheck> CheckLocalManualInfo(const Program& program);
/// Shows the older entries and asks whether to go on; the box's answer, 6 or 7.
int AskAboutManualInfo(const Program& program, const ManualInfoCheck& check);

/// Before manuals are installed: the disc's file goes to C:\man_info when the copy there is missing or older. Reports
/// nothing.
void PrepareManualInfo(Platform& platform, const Paths& paths);
/// After all manuals are installed: both of the disc's files go to InstallDir, over older copies. Reports nothing.
void PlaceManualInfo(Platform& platform, const Paths& paths);

}  // namespace mip
