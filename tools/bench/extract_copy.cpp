// Times one extraction and one folder copy on the real system: extract_copy ARCHIVE EXTRACTED COPIED
// Prints seconds, calls per file, and the peak of the working set.

#include <atomic>
#include <cstdio>
#include <string>

#include "app/modFolderCopy.h"
#include "install/modUnZip.h"
#include "startup/windows/WindowsPlatform.h"
#include "tools/bench/Measure.h"

#include <windows.h>

#include <psapi.h>

namespace mip {
namespace {

/// What the extractor asks of the computer, counted.
class CountingSystem : public WindowsArchiveSystem {
  public:
    void CreateFolder(const std::wstring& folder) override {
        ++Calls;
        WindowsArchiveSystem::CreateFolder(folder);
    }
    std::unique_ptr<ExtractedFile> CreateNewFile(const std::wstring& path) override {
        ++Calls;
        return WindowsArchiveSystem::CreateNewFile(path);
    }
    std::atomic<int> Calls = 0;
};

class CountingFiles : public WindowsFiles {
  public:
    bool Exists(const std::wstring& path) override {
        ++Calls;
        return WindowsFiles::Exists(path);
    }
    FileStatus Status(const std::wstring& path) override {
        ++Calls;
        return WindowsFiles::Status(path);
    }
    void SetAttributes(const std::wstring& path, std::uint32_t bits) override {
        ++Calls;
        WindowsFiles::SetAttributes(path, bits);
    }
    void CopyAllToNew(const std::wstring& source, const std::vector<std::wstring>& names,
                      const std::wstring& destination, const Copied& copied) override {
        Calls += static_cast<int>(names.size());
        WindowsFiles::CopyAllToNew(source, names, destination, copied);
    }
    int Calls = 0;
};

class CountingFolders : public WindowsFolders {
  public:
    bool Exists(const std::wstring& folder) override {
        ++Calls;
        return WindowsFolders::Exists(folder);
    }
    void Create(const std::wstring& folder) override {
        ++Calls;
        WindowsFolders::Create(folder);
    }
    FolderListing List(const std::wstring& folder) override {
        ++Calls;
        return WindowsFolders::List(folder);
    }
    int Calls = 0;
};

/// The real computer with a count of the calls for files, and with the embedded extractor only.
struct Computer {
    WindowsPlatform Real{L"ExtractCopyBench"};
    CountingSystem ArchiveSystem;
    CountingFiles Files;
    CountingFolders Folders;
    EmbeddedArchives Archives{ArchiveSystem, Real.Platform().Clock};
    mip::Platform Platform = Counted(Real.Platform());

  private:
    mip::Platform Counted(const mip::Platform& real) {
        return {.Files = Files,
                .Folders = Folders,
                .Volumes = real.Volumes,
                .FileVersions = real.FileVersions,
                .ProfileFiles = real.ProfileFiles,
                .Registry = real.Registry,
                .Processes = real.Processes,
                .Clock = real.Clock,
                .Computer = real.Computer,
                .AccountNames = real.AccountNames,
                .AccessControl = real.AccessControl,
                .Shell = real.Shell,
                .Browsers = real.Browsers,
                .Archives = Archives,
                .JetEngine = real.JetEngine,
                .SqliteEngine = real.SqliteEngine,
                .MessageBoxes = real.MessageBoxes};
    }
};

unsigned PeakKibibytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters));
    return static_cast<unsigned>(counters.PeakWorkingSetSize / 1024);
}

int Run(const std::wstring& archive, const std::wstring& extracted, const std::wstring& copied) {
    Computer computer;
    const unsigned idle = PeakKibibytes();
    std::int32_t failed = 0;
    const double extraction = SecondsOf(
        [&] { failed |= ExtractArchive(computer.Platform, L"\"" + archive + L"\"", L"\"" + extracted + L"\\\""); });
    std::int32_t files = 0;
    const double counting = SecondsOf(
        [&] { files = CopyFolderWithProgress(computer.Platform, CopyMode::CountOnly, 0, extracted, copied); });
    const int folderCalls = computer.Folders.Calls;
    const double copy =
        SecondsOf([&] { failed |= CopyFolderWithProgress(computer.Platform, CopyMode::Copy, 0, extracted, copied); });
    std::printf("extract %.3f count %.3f copy %.3f extract_calls %.3f copy_calls %.3f peak %u\n", extraction, counting,
                copy, computer.ArchiveSystem.Calls / static_cast<double>(files),
                (computer.Files.Calls + computer.Folders.Calls - folderCalls) / static_cast<double>(files),
                PeakKibibytes() - idle);
    return failed == 0 && files > 0 ? 0 : 1;
}

}  // namespace
}  // namespace mip

int main(int count, char** arguments) {
    if (count != 4) {
        std::puts("extract_copy ARCHIVE EXTRACTED COPIED");
        return 2;
    }
    return mip::Run(mip::Widen(arguments[1]), mip::Widen(arguments[2]), mip::Widen(arguments[3]));
}
