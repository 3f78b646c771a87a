#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/archive/EmbeddedArchives.h"
#include "platform/windows/Handle.h"
#include "tests/native/archive/ArchiveComputer.h"
#include "tests/native/archive/ZipBuilder.h"
#include "tests/native/fakes/FakeComputer.h"

#include <windows.h>

#include <psapi.h>

namespace mip {
namespace {

class WindowsExtraction : public testing::Test {
  protected:
    std::int32_t Extract(const std::string& zip) {
        computer_->Put(archive_, zip);
        return EmbeddedArchives(computer_->System(), clock_)
            .SevenZip(L"x -aoa " + archive_ + L" " + out_, NoFaultLog::Instance());
    }

    const std::unique_ptr<ArchiveComputer> computer_ = MakeArchiveComputer();
    Files& files_ = computer_->Files();
    const std::wstring archive_ = computer_->At(L"manual.zip");
    const std::wstring out_ = computer_->At(L"out");
    Faults faults_;
    FakeClock clock_{faults_};
};

TEST_F(WindowsExtraction, PathsMayBeLong) {
    std::string name;
    std::wstring path = out_;
    for (int level = 0; level < 5; ++level) {
        name += std::string(90, 'd') + "/";
        path += L"\\" + std::wstring(90, L'd');
    }
    for (const std::string content : {"long", "again"}) {
        ASSERT_EQ(Extract(BuildZip({{.Name = name + "file.htm", .Content = content}})), 0);
        EXPECT_EQ(files_.Read(path + L"\\file.htm"), content);
    }
}

TEST_F(WindowsExtraction, ReplacesReadOnlyAndHiddenFilesAndFailsAtOneInUse) {
    const std::string zip = BuildZip({{.Name = "a.txt", .Content = "new", .Attributes = attributes::ReadOnly}});
    const std::string old = BuildZip({{.Name = "a.txt", .Content = "old content"}});
    const std::wstring file = out_ + L"\\a.txt";
    for (const std::uint32_t bits : {attributes::ReadOnly, attributes::Hidden | attributes::System}) {
        ASSERT_EQ(Extract(old), 0);
        files_.SetAttributes(file, bits);
        ASSERT_EQ(Extract(zip), 0);
        EXPECT_EQ(files_.Read(file), "new");
        EXPECT_EQ(files_.Status(file).Attributes & ~attributes::Archive, 0U);
    }
    const FileHandle lock(CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_NE(Extract(old), 0);
    EXPECT_EQ(files_.Read(file), "new");
}

TEST_F(WindowsExtraction, PackerTimesAreThisComputersLocalTime) {
    ASSERT_EQ(Extract(BuildZip({{.Name = "a", .Content = "a", .DosTime = 0x58A6'38E4}})), 0);
    std::tm parts{8, 7, 7, 6, 4, 124, 0, 0, -1};  // 6 May 2024, 7:07:08
    EXPECT_EQ(files_.Status(out_ + L"\\a").Modified, std::chrono::system_clock::from_time_t(std::mktime(&parts)));
}

std::size_t PeakMemory() {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters));
    return counters.PeakWorkingSetSize;
}

TEST_F(WindowsExtraction, MemoryStaysBoundedWithAsManyEntriesAsAreTaken) {
    WriteZipOfEmptyFiles(std::ofstream(std::filesystem::path(archive_), std::ios::binary).seekp(0), 200'000);
    const std::size_t before = PeakMemory();
    ASSERT_GT(before, 0U);
    const ArchiveFacts facts = EmbeddedArchives(computer_->System(), clock_).Test(L"x -aoa " + archive_ + L" " + out_);
    EXPECT_EQ(facts.Files, 200'000U);
    EXPECT_LT(PeakMemory() - before, 32U * 1024 * 1024);
}

}  // namespace
}  // namespace mip
