// An update on a drive that is full. Drive E: is small, and other files can fill it.

#include <gtest/gtest.h>

#include <filesystem>

#include <windows.h>

#include "forms/ControlIds.h"
#include "platform/sqlite/SqliteEngine.h"
#include "tools/screenshots/WorkshopUser.h"

namespace mip {
namespace {

namespace fs = std::filesystem;

constexpr wchar_t Manual[] = L"Brescot2018_Workshop_EN";
constexpr wchar_t Publication[] = L"K3420MM";
constexpr wchar_t Folder[] = L"E:\\Manuals\\Brescot2018_Workshop_EN";

/// Fills the drive until less than so many bytes are free.
void FillDrive(std::size_t bytesLeft) {
    const auto free = static_cast<std::size_t>(fs::space(L"E:\\").free);
    ASSERT_GT(free, bytesLeft);
    WriteBytes(L"E:\\other.bin", std::string(free - bytesLeft, 'x'));
    ASSERT_LE(fs::space(L"E:\\").free, bytesLeft);
}

/// The bytes of the disc's edition, and a little more.
std::size_t EditionBytes() {
    std::size_t bytes = 20'000;
    for (const auto& [path, content] : FilesBelow(std::wstring(L"D:\\") + Manual)) {
        bytes += path.find(L"\\install\\") == std::wstring::npos ? content.size() : 0;
    }
    return bytes;
}

/// Moves the installed edition to the small drive, only a few files of it: what it frees is too little for the next
/// one.
void MoveEditionToSmallDrive() {
    ASSERT_LT(fs::space(L"E:\\").capacity, 10'000'000U) << "drive E: must be the small one of this test";
    const fs::path installed = std::wstring(Manuals) + L"\\" + Manual;
    fs::create_directories(fs::path(Folder).parent_path());
    fs::copy(installed, Folder);
    fs::create_directories(std::wstring(Folder) + L"\\contents");
    fs::copy(installed / L"contents", std::wstring(Folder) + L"\\contents");
    SqliteEngine().Open(Catalogue)->Execute(L"UPDATE M_manage SET INSPath='" + std::wstring(Folder) +
                                            L"' WHERE Pub_No='" + Publication + L"'");
}

TEST(FullDrive, StopsBeforeTheRemovalWhenKnownAndIsRepairedWhenNot) {
    KeepOnDiscAlone({Manual});
    MoveEditionToSmallDrive();
    const auto edition = FilesBelow(Folder);
    ASSERT_GT(edition.size(), 1U);
    const WorkshopUser user;

    // Room for the bytes of the new edition, but not for its many small files.
    FillDrive(EditionBytes());
    user.Install();
    EXPECT_EQ(user.ResultTexts(), FailureTexts(22));
    EXPECT_TRUE(FilesBelow(Folder) == edition);
    EXPECT_EQ(ReadCatalogue().at(Publication), (Row{L"3", Folder, L"0"}));
    fs::remove(L"E:\\other.bin");
    user.CloseResult();

    // Another program takes the space between the look at it and the copy: unpacking has begun.
    user.Agree();
    const HWND bar = GetDlgItem(user.WaitForProgress(), ids::pgBar);
    user.WaitUntil("unpacking", [&] { return IsWindowVisible(bar) != 0; });
    FillDrive(40'000);
    user.WaitForResult();
    EXPECT_EQ(user.ResultTexts(), FailureTexts(83));
    EXPECT_EQ(ReadCatalogue().at(Publication), (Row{L"3", Folder, L"1"})) << "no longer usable";
    fs::remove(L"E:\\other.bin");
    EXPECT_EQ(user.Leave(), 4U);

    const WorkshopUser again;
    again.Install();
    EXPECT_EQ(again.Leave(), 0U);
    EXPECT_EQ(ReadCatalogue().at(Publication), (Row{L"5", Folder, L"0"}));
    EXPECT_TRUE(IsDiscEdition(Folder, Manual));
}

}  // namespace
}  // namespace mip
