#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <fstream>

#include "platform/FaultLog.h"
#include "platform/PlatformError.h"
#include "platform/archive/EmbeddedArchives.h"
#include "platform/windows/Handle.h"
#include "platform/windows/WindowsArchiveSystem.h"
#include "platform/windows/WindowsArchives.h"
#include "platform/windows/WindowsClock.h"
#include "platform/windows/WindowsComputer.h"
#include "tests/ScratchFolder.h"
#include "tests/native/archive/ZipArchivesHost.h"

namespace mip {
namespace {

namespace fs = std::filesystem;

constexpr auto LibraryName = L"7-zip32.dll";
/// What the library answers when it cannot do what it was told.
constexpr int LibraryFailure = 0x00008020;

const fs::path SystemFolder = L"C:\\windows\\system32";

/// Where a module of this process was loaded from; of the program itself without a name. "" when there is none.
fs::path PathOfModule(const wchar_t* name) {
    wchar_t path[MAX_PATH] = L"";
    const HMODULE module = GetModuleHandleW(name);
    return module && GetModuleFileNameW(module, path, MAX_PATH) != 0 ? path : L"";
}

void PutLibrary(const fs::path& folder) {
    const fs::path library = PathOfModule(nullptr).parent_path() / "recording-library.dll";
    ASSERT_TRUE(CopyFileW(library.c_str(), (folder / LibraryName).c_str(), FALSE));
}

/// The computer on which the program lies in a folder of the test's.
class ProgramComputer : public WindowsComputer {
  public:
    ProgramComputer() : WindowsComputer(L"archivelibrary_test") {}
    std::wstring ProgramFolder() override { return Folder.Path().wstring(); }

    const ScratchFolder Folder;
};

/// A program beside which the archive library stands.
class LibraryArchivesHost : public ZipArchivesHost {
  public:
    LibraryArchivesHost() { PutLibrary(computer_.Folder.Path()); }
    mip::Archives& Archives() override { return archives_; }

  private:
    ProgramComputer computer_;
    WindowsArchiveSystem system_;
    WindowsClock clock_;
    EmbeddedArchives embedded_{system_, clock_};
    WindowsArchives archives_{computer_, embedded_};
};

/// Notes what the embedded extractor is asked for.
class NotedExtractor : public Archives {
  public:
    std::int32_t SevenZip(const std::wstring& commandLine, FaultLog&) override {
        CommandLines.push_back(commandLine);
        return 7;
    }
    ArchiveFacts Inspect(const std::wstring&) override {
        return Refuses ? throw PlatformError("Inspect", L"", 1) : Facts;
    }
    ArchiveFacts Test(const std::wstring& commandLine) override { return Inspect(commandLine); }

    bool Refuses = false;
    const ArchiveFacts Facts{4096, 1, true};
    std::vector<std::wstring> CommandLines;
};

class ArchiveLibrary : public testing::Test {
  protected:
    ArchiveLibrary() { SetEnvironmentVariableA("SEVENZIP_CALL", nullptr); }

    std::int32_t Extract(const std::wstring& commandLine) {
        return archives_.emplace(computer_, embedded_).SevenZip(commandLine, NoFaultLog::Instance());
    }
    /// How the library was called last; "" when it was not.
    static std::string LastCall() {
        char call[512] = "";
        GetEnvironmentVariableA("SEVENZIP_CALL", call, sizeof call);
        return call;
    }

    NotedExtractor embedded_;
    ProgramComputer computer_;
    std::optional<WindowsArchives> archives_;  ///< new for each extraction
    const fs::path library_ = computer_.Folder.Path() / LibraryName;
};

TEST_F(ArchiveLibrary, LibraryBesideTheProgramElseInTheSystemFolderGetsTheCommandLine) {
    const std::wstring commandLine = L"x -aoa -hide D:\\K\\manual.zip \"C:\\Temp\\é x\\\"";
    PutLibrary(SystemFolder);
    // The system removes it even if the test crashes.
    const FileHandle systemLibrary(CreateFileW((SystemFolder / LibraryName).c_str(), DELETE,
                                               FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                               OPEN_EXISTING, FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    EXPECT_EQ(Extract(commandLine), LibraryFailure);
    EXPECT_TRUE(fs::equivalent(PathOfModule(LibraryName), SystemFolder / LibraryName));

    PutLibrary(computer_.Folder.Path());
    EXPECT_EQ(Extract(commandLine), LibraryFailure);
    EXPECT_EQ(PathOfModule(LibraryName), library_);
    EXPECT_EQ(LastCall(), computer_.ToSystemCodePage(commandLine) + " > \"\" of 0");
    EXPECT_TRUE(embedded_.CommandLines.empty());

    EXPECT_EQ(CodeOf([&] { archives_->Test(L"x -aoa -hide \"D:\\none.zip\" \"C:\\t\\\""); }),
              static_cast<std::uint32_t>(LibraryFailure));
    EXPECT_EQ(LastCall(), "t -hide D:\\none.zip > \"\" of 0") << "it tests what it is to extract";
}

TEST_F(ArchiveLibrary, EmbeddedExtractorWorksWhereNoUsableLibraryIs) {
    const std::wstring commandLine = L"x -aoa -hide D:\\manual.zip \"C:\\Temp\\\"";
    EXPECT_EQ(Extract(commandLine), 7);
    std::ofstream(library_) << "not a library";
    EXPECT_EQ(Extract(commandLine), 7);
    ASSERT_TRUE(CopyFileW((SystemFolder / "version.dll").c_str(), library_.c_str(), FALSE));
    EXPECT_EQ(Extract(commandLine), 7) << "a library without the command entry";
    EXPECT_EQ(embedded_.CommandLines, std::vector<std::wstring>(3, commandLine));
}

TEST_F(ArchiveLibrary, EmbeddedExtractorServesWhatTheLibraryShouldNotGet) {
    PutLibrary(computer_.Folder.Path());
    std::vector<std::wstring> commandLines = {
        L"x -aoa -hide D:\\K 2021\\manual.zip \"C:\\t\\\"", L"x -aoa -hide \"D:\\K 2021\\manual.zip\" \"C:\\t\\\"",
        L"x -aoa -hide D:\\\u2603\\manual.zip \"C:\\t\\\"", L"x -aoa -hide D:\\K\\manual.zip \"C:\\\u2603\\\"",
        L"l -aoa -hide D:\\K\\manual.zip \"C:\\t\\\""};
    for (const std::wstring& commandLine : commandLines) {
        EXPECT_EQ(Extract(commandLine), 7);
        EXPECT_EQ(archives_->Test(commandLine), embedded_.Facts);
    }
    embedded_.Refuses = true;
    commandLines.push_back(L"x -aoa -hide D:\\K\\manual.zip \"C:\\t\\\"");
    EXPECT_EQ(Extract(commandLines.back()), 7);
    EXPECT_THROW(archives_->Test(commandLines.back()), PlatformError);
    EXPECT_EQ(embedded_.CommandLines, commandLines);
    EXPECT_EQ(LastCall(), "");
}

}  // namespace

std::unique_ptr<ArchivesHost> MakeArchivesHost() {
    return std::make_unique<LibraryArchivesHost>();
}

}  // namespace mip
