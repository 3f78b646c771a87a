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
#include "platform/windows/WindowsComputer.h"
#include "tests/ScratchFolder.h"
#include "tests/native/archive/ZipArchivesHost.h"
#include "tests/native/fakes/FakeComputer.h"

namespace mip {
namespace {

namespace fs = std::filesystem;

constexpr auto LibraryName = L"7-zip32.dll";
/// What the library answers when it cannot do what it was told.
constexpr int LibraryFailure = 0x00008020;

fs::path SystemFolder() {
    wchar_t folder[MAX_PATH] = L"";
    GetSystemDirectoryW(folder, MAX_PATH);
    return folder;
}

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
    Faults faults_;
    FakeClock clock_{faults_};
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
        if (Refuses) {
            throw PlatformError("Inspect", L"", 1);
        }
        return Facts;
    }
    ArchiveFacts Test(const std::wstring& commandLine) override { return Inspect(commandLine); }

    bool Refuses = false;
    const ArchiveFacts Facts{4096, 1, true};
    std::vector<std::wstring> CommandLines;
};

class ArchiveLibrary : public testing::Test {
  protected:
    static std::int32_t Extract(Archives& archives, const std::wstring& commandLine) {
        return archives.SevenZip(commandLine, NoFaultLog::Instance());
    }
    std::int32_t ExtractAnew(const std::wstring& commandLine) {
        WindowsArchives archives(computer_, embedded_);
        return Extract(archives, commandLine);
    }
    /// How the library was called last; "" when it was not.
    static std::string LastCall() {
        char call[512] = "";
        GetEnvironmentVariableA("SEVENZIP_CALL", call, sizeof call);
        return call;
    }

    NotedExtractor embedded_;
    ProgramComputer computer_;
    const fs::path library_ = computer_.Folder.Path() / LibraryName;
};

/// Puts the library into the system folder, from which the system removes it even if the test crashes.
FileHandle PutSystemLibrary() {
    PutLibrary(SystemFolder());
    return FileHandle(CreateFileW((SystemFolder() / LibraryName).c_str(), DELETE,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_DELETE_ON_CLOSE, nullptr));
}

TEST_F(ArchiveLibrary, LibraryBesideTheProgramGetsTheCommandLine) {
    PutLibrary(computer_.Folder.Path());
    const FileHandle systemLibrary = PutSystemLibrary();
    const std::wstring commandLine = L"x -aoa -hide D:\\K\\manual.zip \"C:\\Temp\\é x\\\"";
    WindowsArchives archives(computer_, embedded_);
    EXPECT_EQ(Extract(archives, commandLine), LibraryFailure);
    EXPECT_EQ(PathOfModule(LibraryName), library_);
    EXPECT_EQ(LastCall(), computer_.ToSystemCodePage(commandLine) + " > \"\" of 0");
    EXPECT_TRUE(embedded_.CommandLines.empty());

    EXPECT_EQ(CodeOf([&] { archives.Test(L"x -aoa -hide \"D:\\none.zip\" \"C:\\t\\\""); }),
              static_cast<std::uint32_t>(LibraryFailure));
    EXPECT_EQ(LastCall(), "t -hide D:\\none.zip > \"\" of 0") << "it tests what it is to extract";
}

TEST_F(ArchiveLibrary, LibraryOfTheSystemFolderIsSecondChoice) {
    const FileHandle systemLibrary = PutSystemLibrary();
    WindowsArchives archives(computer_, embedded_);
    EXPECT_EQ(Extract(archives, L"x -aoa -hide D:\\manual.zip C:\\t"), LibraryFailure);
    EXPECT_TRUE(fs::equivalent(PathOfModule(LibraryName), SystemFolder() / LibraryName));
}

TEST_F(ArchiveLibrary, EmbeddedExtractorWorksWhereNoUsableLibraryIs) {
    const std::wstring commandLine = L"x -aoa -hide \"D:\\車 両.zip\" \"C:\\Temp\\\"";
    EXPECT_EQ(ExtractAnew(commandLine), 7);
    std::ofstream(library_) << "not a library";
    EXPECT_EQ(ExtractAnew(commandLine), 7);
    ASSERT_TRUE(CopyFileW((SystemFolder() / "version.dll").c_str(), library_.c_str(), FALSE));
    EXPECT_EQ(ExtractAnew(commandLine), 7) << "a library without the command entry";
    EXPECT_EQ(embedded_.CommandLines, std::vector<std::wstring>(3, commandLine));
}

TEST_F(ArchiveLibrary, EmbeddedExtractorServesWhatTheLibraryShouldNotGet) {
    PutLibrary(computer_.Folder.Path());
    WindowsArchives archives(computer_, embedded_);
    std::vector<std::wstring> commandLines = {
        L"x -aoa -hide D:\\K 2021\\manual.zip \"C:\\t\\\"", L"x -aoa -hide \"D:\\K 2021\\manual.zip\" \"C:\\t\\\"",
        L"x -aoa -hide D:\\\u2603\\manual.zip \"C:\\t\\\"", L"x -aoa -hide D:\\K\\manual.zip \"C:\\\u2603\\\"",
        L"l -aoa -hide D:\\K\\manual.zip \"C:\\t\\\""};
    for (const std::wstring& commandLine : commandLines) {
        EXPECT_EQ(Extract(archives, commandLine), 7);
        EXPECT_EQ(archives.Test(commandLine), embedded_.Facts);
    }
    embedded_.Refuses = true;
    commandLines.push_back(L"x -aoa -hide D:\\K\\manual.zip \"C:\\t\\\"");
    EXPECT_EQ(Extract(archives, commandLines.back()), 7);
    EXPECT_THROW(archives.Test(commandLines.back()), PlatformError);
    EXPECT_EQ(embedded_.CommandLines, commandLines);
    EXPECT_EQ(LastCall(), "");
}

}  // namespace

std::unique_ptr<ArchivesHost> MakeArchivesHost() {
    return std::make_unique<LibraryArchivesHost>();
}

}  // namespace mip
