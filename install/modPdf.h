#pragma once

#include <string>

#include "app/Program.h"

namespace mip {

/// manual folder\contents\name.pdf
std::wstring GetManualPdfPath(const std::wstring& manualFolder, const std::wstring& pdfName);
/// The same below the disc root; `manualFolder` is the folder's name there.
std::wstring GetRootedManualPdfPath(const Program& program, const std::wstring& manualFolder,
                                    const std::wstring& pdfName);
bool ManualPdfExists(Platform& platform, const std::wstring& manualFolder, const std::wstring& pdfName);
bool RootedManualPdfExists(const Program& program, const std::wstring& manualFolder, const std::wstring& pdfName);

/// True when "mam_man.fdf" says this version already; false also when it cannot be read.
bool IsVersionStamped(const Program& program, const std::wstring& version);
/// Writes "mam_man.fdf" (Forms Data Format 1.2) with the manager program's version into InstallDir and opens it to
/// local users. False when that failed; an existing file is replaced.
bool WriteVersionStamp(Program& program, const std::wstring& version);

}  // namespace mip
