#include "install/modUnZip.h"

#include <exception>

#include "platform/Archives.h"

namespace mip {

std::int32_t ExtractArchive(Platform& platform, const std::wstring& archivePath,
                            const std::wstring& quotedOutputFolder) {
    constexpr std::int32_t NotCalled = -1;
    try {
        return platform.Archives.SevenZip(L"x -aoa -hide " + archivePath + L" " + quotedOutputFolder);
    } catch (const std::exception&) {
        return NotCalled;
    }
}

}  // namespace mip
