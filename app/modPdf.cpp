#include "app/modPdf.h"

#include "app/Program.h"
#include "platform/Files.h"

namespace mip {

std::wstring GetManualPdfPath(const std::wstring& manualFolder, const std::wstring& pdfName) {
    return manualFolder + L"\\contents\\" + pdfName + L".pdf";
}

std::wstring GetRootedManualPdfPath(const Program& program, const std::wstring& manualFolder,
                                    const std::wstring& pdfName) {
    return GetManualPdfPath(program.Paths.DiscRootPath + manualFolder, pdfName);
}

bool ManualPdfExists(Platform& platform, const std::wstring& manualFolder, const std::wstring& pdfName) {
    return platform.Files.Exists(GetManualPdfPath(manualFolder, pdfName));
}

bool RootedManualPdfExists(const Program& program, const std::wstring& manualFolder, const std::wstring& pdfName) {
    return program.Platform.Files.Exists(GetRootedManualPdfPath(program, manualFolder, pdfName));
}

}  // namespace mip
