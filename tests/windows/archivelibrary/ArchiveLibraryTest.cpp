#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <fstream>

#include "platform/PlatformError.h"
#include "platform/windows/WindowsArchives.h"
#include "platform/windows/WindowsComputer.h"
#include "tests/windows/archivelibrary/RecordingLibrary.h"

namespace mip {
namespace {

namespace fs = std::filesystem;

constexpr auto LibraryName = L"7-zip32.dll";

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

class FolderComputer : public WindowsComputer {
  public:
    explicit FolderComputer(std::wstring folder)
        : WindowsComputer(L"archivelibrary_test"), folder_(std::move(folder)) {}
    std::wstring ProgramFolder() override { return folder_; }

  private:
    std::wstring folder_;
};

fs::path TestFolder() {
    wchar_t self[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    return fs::path(self).parent_path();
}

/// The recording library as it is loaded now, wherever from.
const RecordedCall* LoadedCall(fs::path& loadedFrom) {
    const HMODULE library = GetModuleHandleW(LibraryName);
    if (!library) {
        return nullptr;
    }
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(library, path, MAX_PATH);
    loadedFrom = path;
    using Entry = const RecordedCall* (*)();
    return reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(library, "LastCall")))();
}

class ArchiveLibrary : public testing::Test {
  protected:
    void SetUp() override {
        fs::create_directories(programFolder_);
        wchar_t folder[MAX_PATH] = L"";
        GetSystemDirectoryW(folder, MAX_PATH);
        systemLibrary_ = fs::path(folder) / LibraryName;
        fs::remove(systemLibrary_);
    }
    void TearDown() override {
        fs::remove_all(programFolder_);
        fs::remove(systemLibrary_);
    }

    void PutLibrary(const fs::path& place) { fs::copy_file(TestFolder() / "recording-library.dll", place); }

    const fs::path programFolder_ = fs::temp_directory_path() / "archive library";
    fs::path systemLibrary_;
    NotedExtractor embedded_;
    FolderComputer computer_{programFolder_.wstring()};
};

TEST_F(ArchiveLibrary, LibraryBesideTheProgramGetsTheCommandLine) {
    PutLibrary(programFolder_ / LibraryName);
    PutLibrary(systemLibrary_);
    const std::wstring commandLine = L"x -aoa -hide D:\\K\\manual.zip \"C:\\Temp\\é x\\\"";
    WindowsArchives archives(computer_, embedded_);
    EXPECT_EQ(archives.SevenZip(commandLine, NoFaultLog::Instance()), LibraryFailure);

    fs::path loadedFrom;
    const RecordedCall* call = LoadedCall(loadedFrom);
    ASSERT_NE(call, nullptr);
    EXPECT_EQ(loadedFrom, programFolder_ / LibraryName);
    EXPECT_EQ(call->Count, 1);
    EXPECT_EQ(call->Owner, nullptr);
    EXPECT_EQ(call->CommandLine, computer_.ToSystemCodePage(commandLine));
    EXPECT_EQ(call->OutputLength, 0);
    EXPECT_EQ(call->OutputSize, 0u);
    EXPECT_TRUE(embedded_.CommandLines.empty());
}

TEST_F(ArchiveLibrary, LibraryOfTheSystemFolderIsSecondChoice) {
    PutLibrary(systemLibrary_);
    WindowsArchives archives(computer_, embedded_);
    EXPECT_EQ(archives.SevenZip(L"x -aoa -hide D:\\manual.zip C:\\t", NoFaultLog::Instance()), LibraryFailure);
    fs::path loadedFrom;
    ASSERT_NE(LoadedCall(loadedFrom), nullptr);
    EXPECT_TRUE(fs::equivalent(loadedFrom, systemLibrary_)) << loadedFrom;
}

TEST_F(ArchiveLibrary, EmbeddedExtractorWorksWhereNoUsableLibraryIs) {
    const std::wstring commandLine = L"x -aoa -hide \"D:\\車 両.zip\" \"C:\\Temp\\\"";
    {
        WindowsArchives archives(computer_, embedded_);
        EXPECT_EQ(archives.SevenZip(commandLine, NoFaultLog::Instance()), 7);
    }
    // A library that is none, and one without the command entry.
    std::ofstream(programFolder_ / LibraryName) << "not a library";
    EXPECT_EQ(WindowsArchives(computer_, embedded_).SevenZip(commandLine, NoFaultLog::Instance()), 7);
    wchar_t folder[MAX_PATH] = L"";
    GetSystemDirectoryW(folder, MAX_PATH);
    fs::remove(programFolder_ / LibraryName);
    fs::copy_file(fs::path(folder) / "version.dll", programFolder_ / LibraryName);
    EXPECT_EQ(WindowsArchives(computer_, embedded_).SevenZip(commandLine, NoFaultLog::Instance()), 7);
    EXPECT_EQ(embedded_.CommandLines, std::vector<std::wstring>(3, commandLine));
}

TEST_F(ArchiveLibrary, EmbeddedExtractorServesWhatTheLibraryShouldNotGet) {
    PutLibrary(programFolder_ / LibraryName);
    WindowsArchives archives(computer_, embedded_);
    const std::wstring plain = L"x -aoa -hide D:\\K\\manual.zip \"C:\\t\\\"";
    std::vector<std::wstring> commandLines = {
        L"x -aoa -hide D:\\K 2021\\manual.zip \"C:\\t\\\"", L"x -aoa -hide \"D:\\K 2021\\manual.zip\" \"C:\\t\\\"",
        L"x -aoa -hide D:\\\u2603\\manual.zip \"C:\\t\\\"", L"x -aoa -hide D:\\K\\manual.zip \"C:\\\u2603\\\"",
        L"l -aoa -hide D:\\K\\manual.zip \"C:\\t\\\"",
    };
    for (const std::wstring& commandLine : commandLines) {
        EXPECT_EQ(archives.SevenZip(commandLine, NoFaultLog::Instance()), 7);
        EXPECT_EQ(archives.Test(commandLine), embedded_.Facts);
    }
    embedded_.Refuses = true;
    EXPECT_EQ(archives.SevenZip(plain, NoFaultLog::Instance()), 7);
    EXPECT_THROW(archives.Test(plain), PlatformError);
    commandLines.push_back(plain);
    EXPECT_EQ(embedded_.CommandLines, commandLines);
    fs::path loadedFrom;
    const RecordedCall* call = LoadedCall(loadedFrom);
    EXPECT_TRUE(call == nullptr || call->Count == 0);
}

TEST_F(ArchiveLibrary, TheLibraryTestsWhatItIsToExtract) {
    PutLibrary(programFolder_ / LibraryName);
    WindowsArchives archives(computer_, embedded_);
    EXPECT_EQ(CodeOf([&] { archives.Test(L"x -aoa -hide \"D:\\none.zip\" \"C:\\t\\\""); }),
              static_cast<std::uint32_t>(LibraryFailure));
    fs::path loadedFrom;
    const RecordedCall* call = LoadedCall(loadedFrom);
    ASSERT_NE(call, nullptr);
    EXPECT_STREQ(call->CommandLine, "t -hide D:\\none.zip");
}

}  // namespace
}  // namespace mip
