#pragma once

#include <string>

namespace mip {

struct Program;

/// Runs the maintenance that the command line asks for, a second's wait before and after, and sets the
/// exit code.
void RunMaintenance(Program& program);

/// Marks the rows of manuals whose files are missing, and deletes those that were marked before. False when the
/// catalogue could not be read or changed.
[[nodiscard]] bool CheckInstalledManuals(Program& program);
/// Removes a manual's folder, then its rows, whether or not the folder could be removed. False when the catalogue could
/// not be changed.
[[nodiscard]] bool RemoveOneManual(Program& program, const std::wstring& folder, const std::wstring& pubNo);

}  // namespace mip
