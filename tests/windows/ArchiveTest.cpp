#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "platform/archive/EmbeddedArchives.h"
#include "platform/windows/WindowsArchiveSystem.h"
#include "platform/windows/WindowsFiles.h"
#include "tests/native/archive/TestSystem.h"
#include "tests/native/archive/ZipBuilder.h"

#include <windows.h>

#include <psapi.h>

namespace mip {

std::unique_ptr<ArchiveSystem> MakeTestSystem(unsigned codePage) {
    return std::make_unique<WindowsArchiveSystem>(codePage);
}

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
    CountingClock Clock_;
};

TEST_F(WindowsExtraction, PathsMayBeLongerThanTheClassicLimit) {
    std::string folder;
    std::wstring path = Out;
    for (int level = 0; level < 5; ++level) {
        folder += std::string(90, 'd') + "/";
        path += L"\\" + std::wstring(90, L'd');
    }
    ASSERT_EQ(Extract(BuildZip({{.Name = folder, .Deflate = false}, {.Name = folder + "file.htm", .Content = "long"}})),
              0);
    EXPECT_EQ(Files.Read(path + L"\\file.htm"), "long");
    EXPECT_EQ(Extract(BuildZip({{.Name = folder + "file.htm", .Content = "again"}})), 0);
    EXPECT_EQ(Files.Read(path + L"\\file.htm"), "again");
}

TEST_F(WindowsExtraction, ArchiveAndEntriesMayHaveJapaneseNames) {
    const ZipItem item{.Name = "\xE6\x95\xB4\xE5\x82\x99/\xE8\xA1\xA8.htm", .Content = "j", .Flags = Utf8Names};
    ASSERT_EQ(Extract(BuildZip({item}), L"整備書 1.zip"), 0);
    EXPECT_EQ(Files.Read(Out + L"\\整備\\表.htm"), "j");
}

TEST_F(WindowsExtraction, ReplacesReadOnlyAndHiddenFiles) {
    const std::string zip = BuildZip({{.Name = "a.txt", .Content = "new", .Attributes = attributes::ReadOnly}});
    for (const std::uint32_t bits : {attributes::ReadOnly, attributes::Hidden | attributes::System}) {
        ASSERT_EQ(Extract(BuildZip({{.Name = "a.txt", .Content = "old content"}})), 0);
        Files.SetAttributes(Out + L"\\a.txt", bits);
        ASSERT_EQ(Extract(zip), 0);
        EXPECT_EQ(Files.Read(Out + L"\\a.txt"), "new");
        EXPECT_EQ(Files.Status(Out + L"\\a.txt").Attributes & ~attributes::Archive, 0U);
    }
}

TEST_F(WindowsExtraction, AFileInUseFailsTheExtraction) {
    ASSERT_EQ(Extract(BuildZip({{.Name = "a.txt", .Content = "old"}})), 0);
    const HANDLE lock = CreateFileW((Out + L"\\a.txt").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_NE(Extract(BuildZip({{.Name = "a.txt", .Content = "new"}})), 0);
    CloseHandle(lock);
    EXPECT_EQ(Files.Read(Out + L"\\a.txt"), "old");
}

TEST_F(WindowsExtraction, PackerTimesAreThisComputersLocalTime) {
    const ZipItem item{.Name = "a", .Content = "a", .DosTime = 0x58A6'38E4};
    ASSERT_EQ(Extract(BuildZip({item})), 0);
    WIN32_FILE_ATTRIBUTE_DATA data{};
    ASSERT_TRUE(GetFileAttributesExW((Out + L"\\a").c_str(), GetFileExInfoStandard, &data));
    SYSTEMTIME universal{};
    SYSTEMTIME local{};
    ASSERT_TRUE(FileTimeToSystemTime(&data.ftLastWriteTime, &universal));
    ASSERT_TRUE(SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local));
    EXPECT_EQ(local.wYear, 2024);
    EXPECT_EQ(local.wMonth, 5);
    EXPECT_EQ(local.wDay, 6);
    EXPECT_EQ(local.wHour, 7);
    EXPECT_EQ(local.wMinute, 7);
    EXPECT_EQ(local.wSecond, 8);
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
    RecordProperty("bytes", static_cast<int>(PeakMemory() - before));
    std::printf("peak memory grew by %u KiB\n", static_cast<unsigned>((PeakMemory() - before) / 1024));
}

}  // namespace
}  // namespace mip
