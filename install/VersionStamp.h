#pragma once

#include <string>

namespace mip {

struct Program;

/// True when "mam_man.fdf" says this version already; false also when it cannot be read.
bool IsVersionStamped(const Program& program, const std::wstring& version);
/// Writes "mam_man.fdf" (Forms Data Format 1.2) with the manager program's version into InstallDir and opens it to
/// local users. False when that failed; an existing file is replaced.
bool WriteVersionStamp(const Program& program, const std::wstring& version);

}  // namespace mip
