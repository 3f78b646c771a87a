#pragma once

#include <string>
#include <vector>

#include "app/EndOfProgram.h"
#include "screens/ScreenFlow.h"

namespace mip {

/// Start-up: checks the computer, loads settings and paths, opens the catalogue database and shows the menu (or, in a
/// quiet or maintenance run, what stands in its place). A failure shows the result screen with its texts.
void Main(Program& program, ScreenFlow& flow, const std::vector<std::wstring>& arguments);

/// True when the manual library's folder and the diagnostic program in it exist.
bool IsManualLinkInstalled(const Program& program);
/// Shows the disc's start page on a computer without the diagnostic program.
void OpenDiscIndex(Program& program);
/// Fills ProcessNames; true when the manager program is not among them. Without a process list the lock file decides.
bool IsManagerNotRunning(Program& program);
/// Releases the database, removes the temporary extraction folder unless it is to be kept, and ends the process with
/// Outcome.ExitCode. Never returns.
[[noreturn]] void EndProgram(Program& program, TemporaryFolder temporary);

}  // namespace mip
