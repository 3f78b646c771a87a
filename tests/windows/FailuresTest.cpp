// An installation that fails, with the real program: what the user is told, what stays, and that the next run repairs.

#include <gtest/gtest.h>

#include <filesystem>

#include <windows.h>

#include "forms/ControlIds.h"
#include "platform/sqlite/SqliteEngine.h"
#include "platform/windows/Handle.h"
#include "tools/screenshots/WorkshopUser.h"

namespace mip {
namespace {

namespace fs = std::filesystem;

constexpr wchar_t Brescot[] = L"Brescot2018_Workshop_EN";
constexpr wchar_t Diagnosis[] = L"Diagnosis2023_PDF";
constexpr wchar_t Halden[] = L"Halden2016_Body_EN";
constexpr wchar_t Merivo[] = L"Merivo2020_Workshop_EN";

std::wstring FolderOf(const std::wstring& manual) {
    return std::wstring(Manuals) + L"\\" + manual;
}

const std::wstring Succeeded = Message(64) + L"\n" + Message(65);

/// Holds a file open as a program does that lets others read and write it, or not even that.
FileHandle Hold(const std::wstring& path, DWORD sharing = 0) {
    FileHandle file(CreateFileW(path.c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_TRUE(file) << GetLastError();
    return file;
}

/// Installs what is on the disc, from the program's start to its end.
void ExpectRun(const std::wstring& texts, DWORD exitCode) {
    const WorkshopUser user;
    user.Install();
    EXPECT_EQ(user.ResultTexts(), texts);
    EXPECT_EQ(user.Leave(), exitCode);
}

/// The question whether to go on without a companion program.
HWND WaitForCompanionQuestion(const WorkshopUser& user) {
    const HWND box = user.WaitForDialogOver(user.WaitForProgress());
    EXPECT_EQ(TextOf(box), Message(34));
    EXPECT_EQ(MessageOf(box), Message(90) + Message(91));
    return box;
}

/// All that is installed: the rows and the files.
auto Library() {
    return std::pair(ReadCatalogue(), FilesBelow(Manuals));
}

/// The disc's edition of a manual is recorded and there.
void ExpectDiscEdition(const std::wstring& pubNo, const std::wstring& version, const std::wstring& manual) {
    EXPECT_EQ(ReadCatalogue().at(pubNo), (Row{version, FolderOf(manual), L"0"}));
    EXPECT_TRUE(IsDiscEdition(FolderOf(manual), manual));
}

TEST(Failures, WithoutTheManagersSetupOrACatalogueOfTheNewFormTheRunStops) {
    const std::wstring setup = L"D:\\programs\\man_manager\\setup.exe";
    const std::wstring order = L"D:\\programs\\man_manager\\setup.fail";
    KeepOnDisc({Merivo});
    WriteBytes(order, "moves itself aside");
    const std::string catalogue = BytesOf(Catalogue);
    ExpectRun(FailureTexts(18), 4);
    EXPECT_EQ(BytesOf(Catalogue), catalogue);

    fs::rename(setup + L".aside", setup);
    fs::remove(order);
    {
        const FileHandle held = Hold(Catalogue, FILE_SHARE_READ | FILE_SHARE_WRITE);
        ExpectRun(FailureTexts(71), 4);
        EXPECT_EQ(BytesOf(Catalogue), catalogue);
    }
    fs::resize_file(L"D:\\programs\\setup\\kvx3new.mdb", 5000);
    ExpectRun(FailureTexts(71), 4);
    EXPECT_EQ(BytesOf(Catalogue), catalogue);
}

TEST(Failures, ACompanionThatFailsIsAskedAbout) {
    KeepOnDisc({Merivo});
    WriteBytes(L"D:\\programs\\manual_link\\setup.fail", "7");
    const auto before = Library();

    const WorkshopUser user;
    user.Agree();
    const HWND question = WaitForCompanionQuestion(user);
    user.TypeKey(question, VK_RETURN);
    EXPECT_EQ(user.WaitForResult(), 0);
    EXPECT_EQ(user.ResultTexts(), FailureTexts(90)) << "Enter is a No";
    EXPECT_TRUE(Library() == before);

    WriteBytes(L"D:\\programs\\manual_link\\setup.fail", "nolog");
    WriteBytes(L"D:\\programs\\View\\setup.fail", "not a number");
    user.CloseResult();
    user.Agree();
    user.Answer(WaitForCompanionQuestion(user), IDYES);
    user.Answer(WaitForCompanionQuestion(user), IDYES);
    EXPECT_EQ(user.WaitForResult(), 1);
    EXPECT_EQ(user.ResultTexts(), Succeeded);
    EXPECT_EQ(user.Leave(), 0U);
    ExpectDiscEdition(L"K2310MM", L"1", Merivo);
}

TEST(Failures, ADamagedArchiveLeavesTheEditionBeforeAndWhatWasInstalled) {
    KeepOnDiscAlone({Brescot, Halden});
    const std::wstring archive = std::wstring(L"D:\\") + Halden + L"\\install\\condense\\manual.zip";
    std::string altered = BytesOf(archive);
    altered.at(altered.size() / 2) ^= 0x10;
    WriteBytes(archive, altered);
    const auto row = ReadCatalogue().at(L"K9310BR");
    const auto files = FilesBelow(FolderOf(Halden));
    ExpectRun(FailureTexts(23), 4);
    EXPECT_EQ(ReadCatalogue().at(L"K9310BR"), row);
    EXPECT_TRUE(FilesBelow(FolderOf(Halden)) == files);
    ExpectDiscEdition(L"K3420MM", L"5", Brescot);
}

TEST(Failures, WhatIsOpenElsewhereStaysAsItIs) {
    KeepOnDiscAlone({Brescot, Diagnosis});
    const std::wstring page = FolderOf(Brescot) + L"\\contents\\index.html";
    const std::wstring pdf = FolderOf(Diagnosis) + L"\\contents\\K8040PD.pdf";
    WriteBytes(pdf, "copied by hand");
    const auto before = Library();
    const WorkshopUser user;
    for (const auto& [path, name] : {std::pair{page, L"Brescot  K3420MM"}, {pdf, L"All models  K8040PD"}}) {
        FileHandle lock = Hold(path);
        user.Install();
        lock.Reset();
        std::wstring inUse = Message(101);
        EXPECT_EQ(user.ResultTexts(), inUse.replace(inUse.find(L'@'), 1, name) + L"\n" + Message(24));
        EXPECT_EQ(Library() == before, path == page);
        EXPECT_EQ(BytesOf(pdf), "copied by hand");
        user.CloseResult();
    }
    EXPECT_FALSE(ReadCatalogue().contains(L"K8040PD"));
    user.Install();
    EXPECT_EQ(user.ResultTexts(), Succeeded);
    EXPECT_EQ(user.Leave(), 0U);
    ExpectDiscEdition(L"K3420MM", L"5", Brescot);
}

/// Fills the small drive until less than so many bytes are free.
void FillDrive(std::size_t bytesLeft) {
    WriteBytes(L"E:\\other.bin", std::string(static_cast<std::size_t>(fs::space(L"E:\\").free) - bytesLeft, 'x'));
    ASSERT_LE(fs::space(L"E:\\").free, bytesLeft);
}

TEST(Failures, AFullDriveIsSaidBeforeTheRemovalWhenKnownAndRepairedWhenNot) {
    KeepOnDiscAlone({Brescot});
    ASSERT_LT(fs::space(L"E:\\").capacity, 10'000'000U) << "drive E: must be the small one of this test";
    const std::wstring folder = std::wstring(L"E:\\Manuals\\") + Brescot;
    // Only a few files of the installed edition: what it frees is too little for the next one.
    fs::create_directories(folder + L"\\contents");
    fs::copy(FolderOf(Brescot), folder);
    fs::copy(FolderOf(Brescot) + L"\\contents", folder + L"\\contents");
    SqliteEngine().Open(Catalogue)->Execute(L"UPDATE M_manage SET INSPath='" + folder + L"' WHERE Pub_No='K3420MM'");
    const auto edition = FilesBelow(folder);
    ASSERT_GT(edition.size(), 1U);

    // Room for the bytes of the new edition, but not for its many small files.
    std::size_t bytes = 20'000;
    for (const auto& [path, content] : FilesBelow(std::wstring(L"D:\\") + Brescot)) {
        bytes += path.find(L"\\install\\") == std::wstring::npos ? content.size() : 0;
    }
    FillDrive(bytes);
    const WorkshopUser user;
    user.Install();
    EXPECT_EQ(user.ResultTexts(), FailureTexts(22));
    EXPECT_TRUE(FilesBelow(folder) == edition);
    EXPECT_EQ(ReadCatalogue().at(L"K3420MM"), (Row{L"3", folder, L"0"}));
    fs::remove(L"E:\\other.bin");
    user.CloseResult();

    // Another program takes the space between the look at it and the copy: while the old edition is being removed.
    const std::wstring batch = L"D:\\programs\\setup\\SysDir\\RmDir.bat";
    WriteBytes(batch,
               "@echo off\r\necho x>C:\\removing\r\n:wait\r\nif not exist C:\\filled goto wait\r\n" + BytesOf(batch));
    user.Agree();
    user.WaitUntil("the removal", [] { return Exists(L"C:\\removing"); });
    FillDrive(40'000);
    WriteBytes(L"C:\\filled", "");
    user.WaitForResult();
    EXPECT_EQ(user.ResultTexts(), FailureTexts(83));
    EXPECT_EQ(ReadCatalogue().at(L"K3420MM"), (Row{L"3", folder, L"1"})) << "no longer usable";
    fs::remove(L"E:\\other.bin");
    EXPECT_EQ(user.Leave(), 4U);

    ExpectRun(Succeeded, 0);
    EXPECT_EQ(ReadCatalogue().at(L"K3420MM"), (Row{L"5", folder, L"0"}));
    EXPECT_TRUE(IsDiscEdition(folder, Brescot));
}

/// A text of the English file, as the log has it.
std::string LogText(int message) {
    const std::wstring text = Message(message);
    return {text.begin(), text.end()};
}

/// Installs what has a folder, and cancels at the first question for one.
void ExpectCancelled(DWORD exitCode) {
    const WorkshopUser user;
    user.Agree();
    user.WaitForResult([&](HWND directory) {
        user.Press(directory, ids::B_Cancel);
        user.Answer(user.WaitForDialogOver(directory), IDYES);
    });
    EXPECT_EQ(user.ResultTexts(), FailureTexts(25));
    EXPECT_EQ(user.Leave(), exitCode);
}

// Each fault comes earlier in the run than the one before it, so that none need be mended.
TEST(Failures, EachExitStatusIsReachedInTimeAndTheLogOfASilentRunSumsItUp) {
    KeepOnDiscAlone({Brescot, Merivo, Halden});
    fs::rename(std::wstring(L"D:\\") + Halden, L"C:\\Later");
    ExpectCancelled(5);
    ExpectDiscEdition(L"K3420MM", L"5", Brescot);
    EXPECT_FALSE(ReadCatalogue().contains(L"K2310MM"));
    ExpectCancelled(2);
    EXPECT_EQ(WorkshopUser(L"/VERYSILENT /CHECK").WaitForEnd(), 0U);
    fs::remove_all(std::wstring(L"D:\\") + Merivo);
    fs::copy(L"C:\\Later", std::wstring(L"D:\\") + Halden, fs::copy_options::recursive);

    const std::tuple<std::wstring, std::string, DWORD, std::string> faults[] = {
        {std::wstring(L"D:\\") + Halden + L"\\install\\condense\\manual.zip", "no archive", 4, LogText(23)},
        {L"D:\\programs\\setup\\kvx3new.mdb", "no database", 4, LogText(71)},
        {Catalogue, "no database", 1, LogText(20)},
        {std::wstring(ManagerFolder) + L"\\KVX3.exe", "", 3, ""}};
    for (const auto& [file, content, code, text] : faults) {
        SCOPED_TRACE(testing::PrintToString(file));
        content.empty() ? static_cast<void>(fs::remove(file)) : WriteBytes(file, content);
        const WorkshopUser user(L"/VERYSILENT /ACCEPT /LANG=09 /LOG=C:\\run.log");
        EXPECT_EQ(user.WaitForEnd([&] { EXPECT_EQ(user.FindScreen(ids::B_OK), nullptr); }), code);
        const std::string log = BytesOf(L"C:\\run.log");
        const std::string end = log.substr(log.rfind("\tend\t") + 1);
        EXPECT_TRUE(end.starts_with("end\t\texit code " + std::to_string(code)) && end.ends_with(text + "\r\n")) << end;
    }
}

}  // namespace
}  // namespace mip
