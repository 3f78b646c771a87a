#include "app/modPdf.h"

#include "app/Program.h"
#include "platform/Files.h"

namespace mip {

std::wstring GetManualPdfPath(const std::wstring& manualFolder, const std::wstring& pdfName) {
    return manualFolder + L"\\contents\\" + pdfName + L".pdf";
}

std::wstring GetRootedManualPdfPath(const Paths& paths, const std::wstring& manualFolder, const std::wstring& pdfName) {
    return GetManualPdfPath(paths.DiscRootPath + manualFolder, pdfName);
}

bool ManualPdfExists(Platform& platform, const std::wstring& manualFolder, const std::wstring& pdfName) {
    return platform.Files.Exists(GetManualPdfPath(manualFolder, pdfName));
}

bool RootedManualPdfExists(Platform& platform, const Paths& paths, const std::wstring& manualFolder,
                           const std::wstring& pdfName) {
    return platform.Files.Exists(GetRootedManualPdfPath(paths, manualFolder, pdfName));
}

}  // namespace mip
