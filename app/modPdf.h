#pragma once

#include <string>

#include "platform/Platform.h"

namespace mip {

struct Paths;

/// manual folder\contents\name.pdf
std::wstring GetManualPdfPath(const std::wstring& manualFolder, const std::wstring& pdfName);
/// The same below the disc root; `manualFolder` is the folder's name there.
std::wstring GetRootedManualPdfPath(const Paths& paths, const std::wstring& manualFolder, const std::wstring& pdfName);
bool ManualPdfExists(Platform& platform, const std::wstring& manualFolder, const std::wstring& pdfName);
bool RootedManualPdfExists(Platform& platform, const Paths& paths, const std::wstring& manualFolder,
                           const std::wstring& pdfName);

}  // namespace mip
