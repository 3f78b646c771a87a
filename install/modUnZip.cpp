#include "install/modUnZip.h"

#include <exception>

#include "app/Program.h"
#include "platform/Archives.h"

namespace mip {

std::wstring ExtractionCommand(const std::wstring& archivePath, const std::wstring& quotedOutputFolder) {
    return L"x -aoa -hide " + archivePath + L" " + quotedOutputFolder;
}

std::wstring ExtractionOf(const Paths& paths, const DiscCatalogueRecord& manual) {
    return ExtractionCommand(manual.SourcePath, QuotedOutputFolder(paths));
}

std::wstring QuotedOutputFolder(const Paths& paths) {
    return L"\"" + paths.UnZipTempPath + L"\\\"";
}

std::int32_t ExtractArchive(Platform& platform, const std::wstring& archivePath,
                            const std::wstring& quotedOutputFolder) {
    constexpr std::int32_t NotCalled = -1;
    try {
        return platform.Archives.SevenZip(ExtractionCommand(archivePath, quotedOutputFolder), platform.FaultLog);
    } catch (const std::exception& error) {
        platform.FaultLog.Trapped("extracting an archive", error);
        return NotCalled;
    }
}

}  // namespace mip
