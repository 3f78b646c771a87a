#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "platform/archive/EmbeddedArchives.h"
#include "platform/windows/Handle.h"
#include "platform/windows/WindowsArchiveSystem.h"
#include "platform/windows/WindowsFiles.h"
#include "tests/ScratchFolder.h"
#include "tests/native/archive/ZipBuilder.h"
#include "tests/native/fakes/FakeComputer.h"

#include <windows.h>

#include <psapi.h>

namespace mip {

namespace {

class WindowsExtraction : public testing::Test {
  protected:
    std::int32_t Extract(const std::string& zip, const std::wstring& archiveName = L"manual.zip") {
        const std::wstring archive = Folder.Below(archiveName);
        Files.Write(archive, zip);
        return EmbeddedArchives(System, Clock_)
            .SevenZip(L"x -aoa -hide \"" + archive + L"\" \"" + Out + L"\\\"", NoFaultLog::Instance());
    }

    ScratchFolder Folder;
    const std::wstring Out = Folder.Below(L"out");
    WindowsArchiveSystem System;
    WindowsFiles Files;
    Faults Faults_;
    FakeClock Clock_{Faults_};
};

TEST_F(WindowsExtraction, PathsMayBeLongAndJapanese) {
    std::string folder;
    std::wstring path = Out;
    for (int level = 0; level < 5; ++level) {
        folder += std::string(90, 'd') + "/";
        path += L"\\" + std::wstring(90, L'd');
    }
    for (const std::string content : {"long", "again"}) {
        ASSERT_EQ(Extract(BuildZip({{.Name = folder, .Deflate = false},
                                    {.Name = folder + "file.htm", .Content = content},
                                    {.Name = "整備/表.htm", .Content = content, .Flags = Utf8Names}}),
                          L"整備書 1.zip"),
                  0);
        EXPECT_EQ(Files.Read(path + L"\\file.htm"), content);
        EXPECT_EQ(Files.Read(Out + L"\\整備\\表.htm"), content);
    }
}

TEST_F(WindowsExtraction, ReplacesReadOnlyAndHiddenFilesAndFailsAtOneInUse) {
    const std::string zip = BuildZip({{.Name = "a.txt", .Content = "new", .Attributes = attributes::ReadOnly}});
    const std::string old = BuildZip({{.Name = "a.txt", .Content = "old content"}});
    const std::wstring file = Out + L"\\a.txt";
    for (const std::uint32_t bits : {attributes::ReadOnly, attributes::Hidden | attributes::System}) {
        ASSERT_EQ(Extract(old), 0);
        Files.SetAttributes(file, bits);
        ASSERT_EQ(Extract(zip), 0);
        EXPECT_EQ(Files.Read(file), "new");
        EXPECT_EQ(Files.Status(file).Attributes & ~attributes::Archive, 0U);
    }
    const FileHandle lock(CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_NE(Extract(old), 0);
    EXPECT_EQ(Files.Read(file), "new");
}

TEST_F(WindowsExtraction, PackerTimesAreThisComputersLocalTime) {
    constexpr std::uint32_t packed = 0x58A6'38E4;  // 6 May 2024, 7:07:08
    ASSERT_EQ(Extract(BuildZip({{.Name = "a", .Content = "a", .DosTime = packed}})), 0);
    WIN32_FILE_ATTRIBUTE_DATA data{};
    ASSERT_TRUE(GetFileAttributesExW((Out + L"\\a").c_str(), GetFileExInfoStandard, &data));
    SYSTEMTIME parts{};
    FILETIME local{};
    WORD date = 0;
    WORD time = 0;
    ASSERT_TRUE(FileTimeToSystemTime(&data.ftLastWriteTime, &parts));
    ASSERT_TRUE(SystemTimeToTzSpecificLocalTime(nullptr, &parts, &parts) && SystemTimeToFileTime(&parts, &local));
    ASSERT_TRUE(FileTimeToDosDateTime(&local, &date, &time));
    EXPECT_EQ(static_cast<std::uint32_t>(date) << 16 | time, packed);
}

std::size_t PeakMemory() {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters));
    return counters.PeakWorkingSetSize;
}

TEST_F(WindowsExtraction, MemoryStaysBoundedWithAsManyEntriesAsAreTaken) {
    {
        std::ofstream zip(Folder.Path() / "manual.zip", std::ios::binary);
        WriteZipOfEmptyFiles(zip, 200'000);
    }
    const std::size_t before = PeakMemory();
    ASSERT_GT(before, 0U);
    const std::wstring command = L"x -aoa " + Folder.Below(L"manual.zip") + L" " + Out;
    EXPECT_EQ(EmbeddedArchives(System, Clock_).Test(command).Files, 200'000U);
    EXPECT_LT(PeakMemory() - before, 32U * 1024 * 1024);
}

}  // namespace
}  // namespace mip
