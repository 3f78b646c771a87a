// Times what brings a manual to its place on the real system: extract_copy ARCHIVE EXTRACTED COPIED PLACED
// Extracts the archive, copies what it brought, and renames it. Prints the seconds of each.

#include <cstdio>
#include <string>

#include "app/modFolderCopy.h"
#include "install/modUnZip.h"
#include "platform/Files.h"
#include "startup/windows/WindowsPlatform.h"
#include "tools/bench/Measure.h"

namespace mip {
namespace {

int Run(const std::wstring& archive, const std::wstring& extracted, const std::wstring& copied,
        const std::wstring& placed) {
    const WindowsPlatform computer(L"ExtractCopyBench");
    Platform platform = computer.Platform();
    std::int32_t failed = 0;
    const double extraction =
        SecondsOf([&] { failed |= ExtractArchive(platform, L"\"" + archive + L"\"", L"\"" + extracted + L"\\\""); });
    const double copy =
        SecondsOf([&] { failed |= CopyFolderWithProgress(platform, CopyMode::Copy, 0, extracted, copied); });
    const double place = SecondsOf([&] { platform.Folders.Move(extracted, placed); });
    std::printf("extract %.4f copy %.4f place %.4f\n", extraction, copy, place);
    return failed == 0 && CountFiles(platform, placed) > 0 ? 0 : 1;
}

}  // namespace
}  // namespace mip

int main(int count, char** arguments) {
    if (count != 5) {
        std::puts("extract_copy ARCHIVE EXTRACTED COPIED PLACED");
        return 2;
    }
    return mip::Run(mip::Widen(arguments[1]), mip::Widen(arguments[2]), mip::Widen(arguments[3]),
                    mip::Widen(arguments[4]));
}
